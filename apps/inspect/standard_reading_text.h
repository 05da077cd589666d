// SPDX-License-Identifier: MIT
#pragma once

#include "inspect/standard_reading.h"

#include <string>

namespace quorvel::inspect {

/// A reading for people: several lines of at most 80 characters.
std::string readingText(StandardReading const& reading);

/// A reading for programs: one line of JSON.
std::string readingJson(StandardReading const& reading);

} // namespace quorvel::inspect
