// SPDX-License-Identifier: MIT
#include "track/target_index.h"

#include <algorithm>

namespace quorvel::modes {

std::size_t TargetIndex::placeOf(unsigned int address) const {
    auto const place = std::lower_bound(_order.begin(), _order.end(), address,
        [](Entry const& entry, unsigned int wanted) { return entry.address < wanted; });
    return static_cast<std::size_t>(place - _order.begin());
}

void TargetIndex::insert(std::shared_ptr<ADSBTarget> const& target) {
    auto const address = target->icaoAddr();
    auto const place = static_cast<std::ptrdiff_t>(placeOf(address));
    _order.insert(_order.begin() + place, {address, target.get()});
    _index[address] = target;
    _numbers.hold(target->trackId());
}

std::shared_ptr<ADSBTarget> TargetIndex::remove(unsigned int address) {
    auto* const found = _index.find(address);
    if (!found) return {};
    auto target = std::move(*found);
    _index.erase(address);
    _order.erase(_order.begin() + static_cast<std::ptrdiff_t>(placeOf(address)));
    _numbers.release(target->trackId());
    return target;
}

void TargetIndex::renumber(unsigned int from, unsigned int to) {
    _numbers.release(from);
    _numbers.hold(to);
}

} // namespace quorvel::modes
