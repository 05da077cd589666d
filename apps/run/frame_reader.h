// SPDX-License-Identifier: MIT
#pragma once

#include "files/byte_source.h"
#include "terminal/progress.h"
#include <airspace/frame.h>
#include <airspace/stream.h>

#include <string>

namespace quorvel::run {

/// Reads a whole recording frame by frame: file, compressed file or standard input. The frames have their times. What
/// is wrong with it is reported on standard error. A file with a date in its name ("2024-05-01") is of that day, unless
/// another is given.
class FrameReader {
public:
    /// Throws HostError when it cannot be opened.
    FrameReader(std::string const& name, airspace::StreamOptions const& options);

    /// The next frames, at least one, in the order of the recording; empty at the end, and after a signal to
    /// stop. Throws HostError when reading fails or the encoding is not recognized.
    airspace::Frames read();

    /// Appends the frames that the next piece of the recording completes; there may be none in it. Throws as
    /// above.
    void readPiece(airspace::Frames& frames);

    /// Whether there are no more.
    bool hasEnded() const { return _ended; }

    std::string const& name() const { return _source.name(); }
    std::optional<airspace::Encoding> encoding() const { return _stream.encoding(); } ///< once it is known
    airspace::Stream const& stream() const { return _stream; }

private:
    void complain(std::string const& what) const;

    files::ByteSource _source;
    airspace::Stream _stream;
    terminal::Progress _progress;
    std::string _bytes;
    bool _ended = false;
};

} // namespace quorvel::run
