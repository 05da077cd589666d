// SPDX-License-Identifier: MIT
#pragma once

#include "host/aircraft.h"

#include "outputs/screen.h"

namespace quorvel::host {

/// All that is known of one aircraft, item by item with value, age and times; no line is wider than
/// `columns`. Where there is room the times have their date; otherwise only those of another day show it,
/// instead of the time.
Screen details(Aircraft const& aircraft, int columns);

} // namespace quorvel::host
