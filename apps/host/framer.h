// SPDX-License-Identifier: MIT
#pragma once

#include "host/beast_undoubler.h"
#include "host/counters.h"
#include "host/encoding.h"
#include "host/frame.h"
#include "host/host_error.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quorvel::host {

/// Cuts frames out of the pieces of one stream, whatever their borders, through the library's extractors, and
/// prepares the stream for them: lines are complete (carriage returns before line feeds taken off), escape
/// bytes undoubled, raw binary handed over frame by frame (the first bit of a frame tells its length),
/// hexadecimal lines made AVR lines. It keeps what the library's records do not: time stamps as they were
/// sent, and signal levels.
class Framer {
public:
    /// Without an encoding, it is found out from the first bytes. `counters` must live as long as the framer.
    explicit Framer(std::optional<Encoding> encoding, Counters& counters);

    /// Appends the frames that the next bytes complete. The beginning of a stream is held back until its
    /// encoding is known. Throws HostError when that cannot be found out.
    void feed(std::string_view bytes, Frames& frames);

    /// Finds out the encoding from what has come so far, for streams that come slowly. What it is must still
    /// be found out when that is not possible yet. Throws UnknownEncoding when it is certainly none.
    void settle(Frames& frames);

    /// Appends what is left at the end of the stream. Throws as above.
    void finish(Frames& frames);

    /// The encoding, once it is known.
    std::optional<Encoding> encoding() const { return _encoding; }

    /// Bytes that are held back until the encoding is known.
    std::size_t heldBack() const { return _encoding ? 0 : _waiting.size(); }

private:
    void findOut();
    UnknownEncoding unknownEncoding() const;
    void cut(Frames& frames);
    void cutLines(std::size_t end, Frames& frames);
    void cutLine(std::string_view line, Frames& frames);
    void cutBeast(Frames& frames, bool isEnd);
    void cutRawFrames(Frames& frames);

    std::optional<Encoding> _encoding;
    Counters& _counters;
    std::size_t _nextSample;
    std::string _waiting; // not yet handed to an extractor, in the stream's own form
    std::string _plain;   // whole plain Beast frames, for the extractor
    std::string _line;    // one AVR line, for the extractor
    BeastUndoubler _undoubler;
    bool _skippingLine = false;
};

} // namespace quorvel::host
