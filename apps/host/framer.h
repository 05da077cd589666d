// SPDX-License-Identifier: MIT
#pragma once

#include <modes/modes_encapsulation.h>

#include "host/beast_undoubler.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quorvel::host {

/// What a Beast stream does with 0x1A inside frames.
enum class BeastEscapes { Find, Doubled, Plain };

/// Cuts frame records out of the pieces of one stream, whatever their borders, through the library's
/// extractors, and prepares the stream for them: lines are complete (carriage returns before line feeds taken
/// off), escape bytes undoubled, raw binary handed over frame by frame (the first bit of a frame tells its
/// length).
class Framer {
public:
    using Format = modes::ModeSEncapsulation::Format;
    using Records = modes::ModeSEncapsulation::Records;

    /// Without a format, it is found out from the first bytes.
    explicit Framer(std::optional<Format> format, BeastEscapes escapes = BeastEscapes::Find);

    /// The records that the next bytes complete. The beginning of a stream is held back until format and
    /// escapes are known. Throws HostError when the format cannot be found out.
    Records feed(std::string_view bytes);

    /// What is left at the end of the stream. Throws as above.
    Records finish();

    /// The format, once it is known.
    std::optional<Format> format() const { return _format; }

    /// Bytes of lines that were too long to be frames, dropped.
    std::size_t droppedBytes() const { return _droppedBytes; }

private:
    void settle();
    Records cut();
    Records cutLines(std::size_t end);
    Records cutBeast();
    Records cutRawFrames();

    std::optional<Format> _format;
    BeastEscapes _escapes;
    bool _settled = false;
    std::string _waiting; // not yet handed to an extractor, in the stream's own form
    std::string _plain;   // plain Beast, for the extractor
    BeastUndoubler _undoubler;
    bool _skippingLine = false;
    std::size_t _droppedBytes = 0;
};

} // namespace quorvel::host
