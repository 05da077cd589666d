// SPDX-License-Identifier: MIT
#include <airspace/extended_squitter.h>

#include <array>

namespace quorvel::airspace {

namespace {

// Codes of one step: the first of them begins at `lowerKt`.
struct Band {
    std::uint8_t first, last;
    double lowerKt, stepKt;
};

constexpr Band kSlowBands[][3] = {
    {{1, 1, 0.0, 0.125}, {2, 2, 0.125, 0.125}, {3, 8, 0.25, 0.125}}, // versions 0 and 1
    {{1, 1, 0.0, 0.0}, {2, 2, 0.0, 0.125}, {3, 8, 0.125, 0.875 / 6}} // version 2
};
constexpr Band kBands[] = {
    {9, 12, 1.0, 0.25}, {13, 38, 2.0, 0.5}, {39, 93, 15.0, 1.0}, {94, 108, 70.0, 2.0}, {109, 123, 100.0, 5.0}};
constexpr std::uint8_t kFastest = 124;
constexpr double kFastestKt = 175.0;

using Ranges = std::array<std::optional<SpeedRange>, 128>;

constexpr void fill(Ranges& ranges, Band const& band) {
    for (unsigned code = band.first; code <= band.last; ++code) {
        auto const lower = band.lowerKt + (code - band.first) * band.stepKt;
        ranges[code] = SpeedRange{lower, lower + band.stepKt};
    }
}

constexpr Ranges rangesOf(Band const (&slowBands)[3]) {
    Ranges ranges{};
    for (auto const& band : slowBands) fill(ranges, band);
    for (auto const& band : kBands) fill(ranges, band);
    ranges[kFastest] = SpeedRange{kFastestKt, std::nullopt};
    return ranges;
}

constexpr std::array<Ranges, 2> kRanges{rangesOf(kSlowBands[0]), rangesOf(kSlowBands[1])};

} // namespace

std::optional<SpeedRange> speedOfMovement(std::uint8_t movement, std::uint8_t version) {
    auto const& ranges = kRanges[version < 2 ? 0 : 1];
    return movement < ranges.size() ? ranges[movement] : std::nullopt;
}

} // namespace quorvel::airspace
