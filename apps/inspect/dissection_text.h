// SPDX-License-Identifier: MIT
#pragma once

#include "inspect/dissection.h"

#include <string>

namespace quorvel::inspect {

/// A dissection for people: several lines of text with a table of the fields.
std::string dissectionText(Dissection const& dissection);

/// A dissection for programs: one line of JSON.
std::string dissectionJson(Dissection const& dissection);

} // namespace quorvel::inspect
