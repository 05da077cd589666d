// SPDX-License-Identifier: MIT
#pragma once

#include "outputs/picture.h"

#include "terminal/screen.h"

namespace quorvel::outputs {

/// All that is known of one aircraft, item by item with value, age and times; no line is wider than
/// `columns`. Where there is room the times have their date; otherwise only those of another day show it,
/// instead of the time.
terminal::Screen details(Aircraft const& aircraft, int columns);

} // namespace quorvel::outputs
