// SPDX-License-Identifier: MIT
#pragma once

#include <modes/modes.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

namespace quorvel::modes::bench {

constexpr std::size_t kPieceSize = 64 * 1024; // as a socket delivers a busy stream

/// Where the piece of a stream that starts at `from` ends. The text extractor takes complete lines only.
inline std::size_t pieceEnd(std::string const& bytes, std::size_t from, ModeSEncapsulation::Format format) {
    auto const end = std::min(from + kPieceSize, bytes.size());
    return format == ModeSEncapsulation::Avr ? bytes.rfind('\n', end - 1) + 1 : end;
}

/// Cuts the frames out of a stream that arrives in pieces, and hands their records to `use`. Returns how many
/// there are.
template <class Use>
std::int64_t forEachFrame(std::string const& bytes, ModeSEncapsulation::Format format, Use const& use) {
    std::int64_t frames = 0;
    std::string buffer;
    for (std::size_t from = 0; from < bytes.size();) {
        auto const end = pieceEnd(bytes, from, format);
        buffer.append(bytes, from, end - from);
        from = end;
        for (auto const& frame : ModeSEncapsulation::extract(buffer, format)) {
            use(frame);
            ++frames;
        }
    }
    return frames;
}

/// What a host has for each receiver.
struct Receiver {
    ModeSDecoder decoder;
    ADSBTracker tracker;

    /// The whole road: extract, decode, track. Returns the number of frames.
    std::int64_t take(std::string const& bytes, ModeSEncapsulation::Format format) {
        return forEachFrame(bytes, format,
            [this](auto const& frame) { tracker.procModeSMsg(decoder.decode(ModeSMessage::DOWNLINK, frame)); });
    }
};

} // namespace quorvel::modes::bench
