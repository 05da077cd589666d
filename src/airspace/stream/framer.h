// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/counts.h>
#include <airspace/encoding.h>
#include <airspace/frame.h>

#include "airspace/stream/beast_undoubler.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quorvel::airspace {

/// Cuts frames out of the pieces of one stream, whatever their borders: lines are complete, the doubling of escape
/// bytes is removed, raw binary is cut by the first bit of each frame, which gives its length. Frames have the
/// receiver's time stamp, signal level and identity where the encoding has them, and no time yet.
class Framer {
public:
    /// If no encoding is given, it is detected from the first bytes. `counts` must live as long as the framer.
    Framer(std::optional<Encoding> encoding, std::uint64_t receiver, Counts& counts);

    /// Appends the frames that the next bytes complete. The start of a stream is held back until its
    /// encoding is known. False when it cannot be detected.
    bool feed(std::string_view bytes, Frames& frames);

    /// Detects the encoding from what has come so far, for streams that come slowly. If that is not possible yet,
    /// detection goes on with later bytes. False when it is certainly none.
    bool settle(Frames& frames);

    /// Appends what is left at the end of the stream. False as above.
    bool finish(Frames& frames);

    /// The encoding, once it is known.
    std::optional<Encoding> encoding() const { return _encoding; }

    /// Bytes that are held back until the encoding is known.
    std::string_view heldBack() const { return _encoding ? std::string_view() : _waiting; }

private:
    bool findOut();
    void cut(Frames& frames);
    void cutLines(std::size_t end, Frames& frames);
    void cutLine(std::string_view line, Frames& frames);
    void cutBeast(Frames& frames, bool isEnd);
    void cutRecord(std::string_view record, Frames& frames);
    void cutRawFrames(Frames& frames);
    Frame& add(std::string_view bytes, Frames& frames) const;

    std::optional<Encoding> _encoding;
    std::uint64_t _receiver;
    Counts& _counts;
    std::size_t _nextSample;
    std::string _waiting; // not yet cut, in the stream's own form
    std::string _records; // whole Beast records
    BeastUndoubler _undoubler;
    bool _skippingLine = false;
};

} // namespace quorvel::airspace
