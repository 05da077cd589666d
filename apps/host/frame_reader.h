// SPDX-License-Identifier: MIT
#pragma once

#include "host/byte_source.h"
#include "host/counters.h"
#include "host/frame.h"
#include "host/frame_clock.h"
#include "host/frameless_span.h"
#include "host/framer.h"
#include "host/progress.h"

#include <optional>
#include <string>

namespace quorvel::host {

/// How a recording is to be read.
struct ReadOptions {
    std::optional<Encoding> encoding; ///< found out from the first bytes when not given
    TimeOptions time;
};

/// Reads a whole recording frame by frame: file, compressed file or standard input. The records bear their
/// times.
class FrameReader {
public:
    /// Throws HostError when it cannot be opened.
    FrameReader(std::string const& name, ReadOptions const& options);

    /// The next frames, at least one, in the order of the recording; empty at the end, and after a signal to
    /// stop. Throws HostError when reading fails or the encoding cannot be told.
    Frames read();

    std::string const& name() const { return _source.name(); }
    std::optional<Encoding> encoding() const { return _framer.encoding(); } ///< once it is known
    FrameClock const& clock() const { return _clock; }
    Counters const& counters() const { return _counters; } ///< of bytes, framing and time

private:
    void readMore(Frames& frames);
    void complain(std::string const& what) const;

    Counters _counters;
    ByteSource _source;
    Framer _framer;
    FramelessSpan _frameless;
    FrameClock _clock;
    Progress _progress;
    bool _ended = false;
};

} // namespace quorvel::host
