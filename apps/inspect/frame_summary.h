// SPDX-License-Identifier: MIT
#pragma once

#include <modes/modes_message.h>

#include <optional>
#include <string>
#include <vector>

namespace quorvel::inspect {

struct ParityView {
    unsigned field;      ///< the last 24 bits as received
    unsigned calculated; ///< from the bits before
    unsigned remainder() const { return field ^ calculated; }
    std::string meaning;
};

/// What is said of every frame, whoever reads it.
struct FrameSummary {
    std::string received;               ///< the bytes as received
    std::string bytes;                  ///< as they were decoded: repaired where that was possible
    std::vector<unsigned> repairedBits; ///< counted from 1
    std::optional<unsigned> format;     ///< the downlink format; none for a Mode A/C reply
    std::string formatName;
    std::string problem; ///< why it is not decoded; empty when it is
    std::optional<modes::ModeSMessage::Confidence> confidence;
    std::optional<ParityView> parity;
    std::optional<unsigned> address;
};

} // namespace quorvel::inspect
