// SPDX-License-Identifier: MIT
#pragma once

namespace quorvel::airspace {

inline constexpr double kEarthRadiusNm = 3440.065; ///< of the sphere on which distances are measured

} // namespace quorvel::airspace
