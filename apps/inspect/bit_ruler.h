// SPDX-License-Identifier: MIT
#pragma once

#include "inspect/dissection.h"

#include <string>

namespace quorvel::inspect {

/// The bits of a frame as decoded in groups, one for each field: above them where they stand, counted from 1,
/// below them the field's name, and marks under bits that were repaired. Where fields overlap a bit belongs
/// to the narrowest. Lines have at most `columns` characters; coloured by field if wanted.
std::string bitRuler(Dissection const& dissection, std::size_t columns, bool coloured);

} // namespace quorvel::inspect
