// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/aircraft.h>
#include <modes/adsb_target_report.h>

namespace quorvel::airspace {

/// Copies the items of a report, which the core's tracker has filled in, into an aircraft. Sources are those
/// of extended squitters, from which most items can only come.
void copyItems(modes::ADSBTargetReport const& report, Aircraft& aircraft);

} // namespace quorvel::airspace
