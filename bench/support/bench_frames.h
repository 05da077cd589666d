// SPDX-License-Identifier: MIT
#pragma once

#include <modes/modes.h>

#include <cstddef>
#include <memory>
#include <random>
#include <string>

namespace quorvel::modes::bench {

using Records = ModeSEncapsulation::Records;
using Random = std::mt19937; // with its standard seed wherever it is used: the same frames in every run

/// The bytes of all frames of a Beast stream.
Records framesOf(std::string const& beast);

/// Intact frames of one downlink format, of 200 aircraft. Simulated aircraft send no DF18 and DF19: these are
/// extended squitters under another format.
Records const& intactFrames(DFMessage::DownlinkFormat format);

DFMessage::DownlinkFormat downlinkFormat(std::string const& frame);

/// A decoder that knows the addresses and the interrogators of those aircraft.
ModeSDecoder decoderInService();

/// Puts a parity, with whatever overlays it, into the last 24 bits of a frame.
void setParity(std::string& frame, unsigned parity);

/// A frame with so many of its data bits inverted, the format and the parity field excepted.
std::string damaged(std::string frame, std::size_t bits, Random& random);

/// A frame with three to five inverted bits that repair does not find. `message` is of its downlink format.
std::string damagedBeyondRepair(ModeSMessage const& message, std::string const& frame, Random& random);

/// The record of a frame, with a time stamp.
std::shared_ptr<ModeSEncapsulation> record(std::string const& frame);

/// An address for each number: scattered over all of them, and different for different numbers of 24 bits.
constexpr unsigned scatteredAddress(std::size_t number) {
    return static_cast<unsigned>(number * 0x9E3779B1 & 0xFFFFFF); // an odd factor loses nothing
}

} // namespace quorvel::modes::bench
