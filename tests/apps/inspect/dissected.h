// SPDX-License-Identifier: MIT
#pragma once

#include "inspect/dissection.h"

#include "support/captured_log.h"

#include <string>

namespace quorvel::inspect {

inline Versions const kAllVersions = versionsOf(std::nullopt);

/// A frame taken apart, without what the library says of it.
inline Dissection dissected(std::string const& frame, Versions const& versions = kAllVersions) {
    modes::test::CapturedLog const log;
    return Dissector(versions).dissect(frame);
}

} // namespace quorvel::inspect
