// SPDX-License-Identifier: MIT
#pragma once

namespace quorvel::modes {

// The version of the library; the build reads these three lines too.
constexpr int kVersionMajor = 1;
constexpr int kVersionMinor = 0;
constexpr int kVersionPatch = 2;

} // namespace quorvel::modes
