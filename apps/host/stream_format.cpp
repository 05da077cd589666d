// SPDX-License-Identifier: MIT
#include "host/stream_format.h"

#include "host/beast_undoubler.h"

#include <algorithm>

namespace quorvel::host {

namespace {

using modes::ModeSEncapsulation;

constexpr std::size_t kLongestFrameBytes = 2 * 23; // a doubled one; the last of a sample may be cut

bool isAvrLine(std::string_view line) {
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (line.size() < 4 || std::string_view("*:@").find(line.front()) == std::string_view::npos) return false;
    auto const digits = line.substr(1, line.find(';') - 1);
    return line.find(';') != std::string_view::npos &&
           digits.find_first_not_of("0123456789ABCDEFabcdef") == std::string_view::npos;
}

bool hasAvrLine(std::string_view sample) {
    while (!sample.empty()) {
        auto const end = std::min(sample.find('\n'), sample.size());
        if (isAvrLine(sample.substr(0, end))) return true;
        sample.remove_prefix(std::min(end + 1, sample.size()));
    }
    return false;
}

} // namespace

std::optional<ModeSEncapsulation::Format> findFormat(std::string_view sample) {
    auto const frames = std::max(chainedBytes(sample, true), chainedBytes(sample, false));
    if (frames > 0 && 2 * frames + kLongestFrameBytes >= sample.size()) return ModeSEncapsulation::Beast;
    if (hasAvrLine(sample)) return ModeSEncapsulation::Avr;
    return {};
}

} // namespace quorvel::host
