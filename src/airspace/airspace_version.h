// SPDX-License-Identifier: MIT
#pragma once

namespace quorvel::airspace {

// The version of the library; the build reads these three lines.
constexpr int kVersionMajor = 1;
constexpr int kVersionMinor = 0;
constexpr int kVersionPatch = 0;

} // namespace quorvel::airspace
