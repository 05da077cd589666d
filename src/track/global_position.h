// SPDX-License-Identifier: MIT
#pragma once

#include <modes/detail/cpr_frame.h>

#include <optional>

namespace quorvel::modes {

/// A position in degrees, north and east positive, and when it was received.
struct GlobalPosition {
    double latitude;
    double longitude;
    unsigned long long time;
};

/// The position that an even and an odd frame of 17-bit coordinates have in common, globally unambiguous:
/// that of the newer frame, of the odd one if they are equally old. Nothing when the frames lie on either
/// side of a transition between numbers of longitude zones.
std::optional<GlobalPosition> globalPosition(detail::CPRFrame const& even, detail::CPRFrame const& odd);

} // namespace quorvel::modes
