// SPDX-License-Identifier: MIT
#pragma once

#include <modes/adsb_target_report.h>

#include "harness/input.h"

#include <memory>

namespace quorvel::fuzz {

/// A report whose items hold anything at all, as one that comes from elsewhere may.
std::shared_ptr<modes::ADSBTargetReport> anyReport(Input& input);

} // namespace quorvel::fuzz
