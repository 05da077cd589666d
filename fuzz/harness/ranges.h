// SPDX-License-Identifier: MIT
#pragma once

namespace quorvel::modes {
class ADSBTarget;
class ADSBTargetReport;
class ModeSMessage;
} // namespace quorvel::modes

namespace quorvel::fuzz {

// What decoded things may hold, by their documentation. Each also makes all texts.

void checkReply(modes::ModeSMessage const& reply);

/// A target that was made of replies, or of reports about such a one.
void checkTarget(modes::ADSBTarget const& target);

/// A report says what its target says.
void checkReport(modes::ADSBTargetReport const& report, modes::ADSBTarget const& target);

} // namespace quorvel::fuzz
