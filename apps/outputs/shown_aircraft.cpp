// SPDX-License-Identifier: MIT
#include "outputs/shown_aircraft.h"

#include <algorithm>
#include <utility>

namespace quorvel::outputs {

bool showsPosition(Aircraft const& aircraft) {
    return aircraft.position.value && aircraft.age(aircraft.position.updated) <= kPositionShown;
}

bool isLive(Aircraft const& aircraft) {
    bool const hadPosition = aircraft.position.updated != 0;
    return aircraft.age(hadPosition ? aircraft.position.updated : aircraft.heard) <= kAircraftLive;
}

std::vector<Aircraft const*> newestByAddress(Picture const& picture) {
    std::vector<Aircraft const*> newest;
    newest.reserve(picture.aircraft.size());
    for (auto const& aircraft : picture.aircraft) newest.push_back(&aircraft);

    auto const address = [](Aircraft const* aircraft) { return std::pair(aircraft->addressKind, aircraft->address); };
    auto const age = [](Aircraft const* aircraft) { return aircraft->age(aircraft->heard); };
    std::stable_sort(newest.begin(), newest.end(), [&](Aircraft const* a, Aircraft const* b) {
        return address(a) != address(b) ? address(a) < address(b) : age(a) < age(b);
    });
    auto const isSame = [&](Aircraft const* a, Aircraft const* b) { return address(a) == address(b); };
    newest.erase(std::unique(newest.begin(), newest.end(), isSame), newest.end());
    return newest;
}

bool timeKnown(Picture const& picture) { return std::ranges::all_of(picture.sources, &SourceState::timeKnown); }

bool timeKnown(Picture const& picture, Aircraft const& aircraft) {
    return std::all_of(picture.sources.begin(), picture.sources.end(), [&](SourceState const& source) {
        bool const isItsOwn = aircraft.source.empty() || source.name == aircraft.source;
        return !isItsOwn || source.timeKnown;
    });
}

} // namespace quorvel::outputs
