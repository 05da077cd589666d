// SPDX-License-Identifier: MIT
#pragma once

#include <map>

namespace quorvel::modes::reference {

/// Track numbers by a search through all targets, restarted whenever the candidate is in use.
class SearchedTrackNumbers {
public:
    std::map<unsigned, unsigned> numberOf; // by address

    unsigned next() {
        if (numberOf.size() >= kMaximum - kMinimum + 1) return 0;
        unsigned candidate = _next > kMinimum && _next <= kMaximum ? _next : kMinimum;
        for (auto entry = numberOf.begin(); entry != numberOf.end();) {
            if (entry->second == candidate) {
                ++candidate;
                if (candidate > kMaximum || candidate < kMinimum) candidate = kMinimum;
                entry = numberOf.begin();
            } else {
                ++entry;
            }
        }
        _next = candidate + 1;
        return candidate;
    }

private:
    static constexpr unsigned kMinimum = 1;
    static constexpr unsigned kMaximum = 4095;
    unsigned _next = kMinimum;
};

} // namespace quorvel::modes::reference
