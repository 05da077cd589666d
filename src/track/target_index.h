// SPDX-License-Identifier: MIT
#pragma once

#include <modes/adsb_target.h>

#include "core/address_map.h"
#include "track/track_numbers.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace quorvel::modes {

/// The targets of a tracker, at most one for each address, with the track numbers that they hold.
///
/// Every reply looks its target up, so there is an index by address; lists are wanted in ascending order of
/// addresses, so the order is kept beside it. New targets are rare, and there are never more than there are
/// track numbers: moving up the few thousand entries behind a new one costs less than a tree would on each
/// walk.
class TargetIndex {
public:
    std::size_t size() const { return _order.size(); }

    /// The target of the address, null when there is none. Ends with the next insertion or removal.
    std::shared_ptr<ADSBTarget> const* find(unsigned int address) const { return _index.find(address); }

    /// The target at a place in ascending order of addresses.
    ADSBTarget const& at(std::size_t place) const { return *_order[place].target; }
    std::shared_ptr<ADSBTarget> const& sharedAt(std::size_t place) const { return *_index.find(_order[place].address); }

    /// The place of the first address from `address` on.
    std::size_t placeOf(unsigned int address) const;

    /// A number for a new target, 0 when all are held.
    unsigned int nextNumber() { return _numbers.next(); }

    /// Adds a target whose address is not in the table, with the number it holds.
    void insert(std::shared_ptr<ADSBTarget> const& target);

    /// Removes and returns the target of the address; empty when there is none.
    std::shared_ptr<ADSBTarget> remove(unsigned int address);

    /// Records that a target holds another number from now on.
    void renumber(unsigned int from, unsigned int to);

private:
    struct Entry {
        unsigned int address;
        ADSBTarget const* target;
    };

    AddressMap<std::shared_ptr<ADSBTarget>> _index;
    std::vector<Entry> _order;
    TrackNumbers _numbers;
};

} // namespace quorvel::modes
