// SPDX-License-Identifier: MIT
#pragma once

#include "host/byte_source.h"
#include "host/counters.h"
#include "host/frame.h"
#include "host/progress.h"
#include "host/stream_input.h"

#include <string>

namespace quorvel::host {

/// Reads a whole recording frame by frame: file, compressed file or standard input. The records bear their
/// times. What is wrong with it is said on standard error. A file with a date in its name ("2024-05-01") is
/// of that day, unless another is given.
class FrameReader {
public:
    /// Throws HostError when it cannot be opened.
    FrameReader(std::string const& name, ReadOptions const& options);

    /// The next frames, at least one, in the order of the recording; empty at the end, and after a signal to
    /// stop. Throws HostError when reading fails or the encoding cannot be told.
    Frames read();

    /// Appends the frames that the next piece of the recording completes; there may be none in it. Throws as
    /// above.
    void readPiece(Frames& frames);

    /// Whether there are no more.
    bool hasEnded() const { return _ended; }

    std::string const& name() const { return _source.name(); }
    std::optional<Encoding> encoding() const { return _input.encoding(); } ///< once it is known
    FrameClock const& clock() const { return _input.clock(); }
    Counters const& counters() const { return _counters; } ///< of bytes, framing and time

private:
    void complain(std::string const& what) const;

    Counters _counters;
    ByteSource _source;
    StreamInput _input;
    Progress _progress;
    std::string _bytes;
    bool _ended = false;
};

} // namespace quorvel::host
