// SPDX-License-Identifier: MIT
#pragma once

#include <modes/modes_decoder.h>

#include "core/address_map.h"

#include <array>
#include <cstdint>
#include <optional>

namespace quorvel::modes {

/// How far the addresses of replies can be trusted, by the replies heard before: which addresses were
/// confirmed within ten minutes, and which interrogators have been answered how often without a pause of more
/// than a minute.
///
/// Reads no clock: every grade is given the time in seconds, of whichever clock the caller goes by.
class Trust {
public:
    using Confidence = ModeSMessage::Confidence;

    /// An intact extended squitter, whose address is in clear: makes the address known.
    Confidence gradeSquitter(unsigned int address, std::int64_t now);

    /// An altitude reply, whose address hides in its parity. A metric altitude is not trusted, but the
    /// reply is as good a sign of its aircraft as any other.
    Confidence gradeAltitude(unsigned int address, bool isMetric, std::int64_t now);

    /// An identity reply, whose address hides in its parity.
    Confidence gradeIdentity(unsigned int address, unsigned int identity, std::int64_t now);

    /// An all-call reply: its address is in clear, but nothing proves that it is intact. It is believed
    /// when both the address and the interrogator that it answers have been heard of.
    Confidence gradeAllCall(unsigned int address, unsigned int interrogator, std::int64_t now);

    /// Fetches from memory what is known of an address that comes soon.
    void expect(unsigned int address) const { _addresses.prefetch(address); }

private:
    using Interrogator = ModeSDecoder::Interrogator;

    void confirm(unsigned int address, std::int64_t now);
    bool confirmIfKnown(unsigned int address, std::int64_t now);

    AddressMap<std::int64_t> _addresses; // when each was last confirmed
    std::array<std::optional<Interrogator>, ModeSMessageFieldPI::kInterrogatorIds> _interrogators;
};

} // namespace quorvel::modes
