// SPDX-License-Identifier: MIT
#include "airspace/readings/standard_atmosphere.h"

#include <array>
#include <cstddef>

namespace quorvel::airspace {

namespace {

constexpr int kLowestFt = -1'024;
constexpr int kStepFt = 512;

// At both ends of each step.
auto const kRatios = [] {
    std::array<double, 251> ratios{};
    for (std::size_t i = 0; i != ratios.size(); ++i) {
        ratios[i] = standardPressureRatio(kLowestFt + kStepFt * static_cast<double>(i));
    }
    return ratios;
}();

constexpr int kHighestFt = kLowestFt + kStepFt * static_cast<int>(kRatios.size() - 1);
static_assert(kHighestFt >= 126'700);

} // namespace

double tabulatedPressureRatio(int altitudeFt) {
    auto const above = std::clamp(altitudeFt, kLowestFt, kHighestFt - 1) - kLowestFt;
    auto const step = static_cast<std::size_t>(above / kStepFt);
    auto const part = static_cast<double>(above % kStepFt) / kStepFt;
    return kRatios[step] + part * (kRatios[step + 1] - kRatios[step]);
}

} // namespace quorvel::airspace
