// SPDX-License-Identifier: MIT
#pragma once

#include "host/counters.h"
#include "host/frame.h"
#include "host/frame_clock.h"
#include "host/frameless_span.h"
#include "host/framer.h"

#include <optional>
#include <string>
#include <string_view>

namespace quorvel::host {

/// How a stream is to be read.
struct ReadOptions {
    std::optional<Encoding> encoding; ///< found out from the first bytes when not given
    TimeOptions time;
};

/// Makes frames with times out of the bytes of one stream: a recording, or one connection.
class StreamInput {
public:
    /// The counters, of bytes, framing and time, must live as long as the input.
    StreamInput(ReadOptions const& options, Origin origin, Counters& counters);

    /// Appends the frames that the next bytes complete. They are held back while it is not known yet how
    /// their time stamps count. `arrival` is the host's clock. Throws UnknownEncoding.
    void feed(std::string_view bytes, TimeMs arrival, Frames& frames);

    /// Makes the best of what has come so far, for live streams on which little happens. Throws
    /// UnknownEncoding.
    void settle(TimeMs arrival, Frames& frames);

    /// Appends what is left at the end of the stream. Throws UnknownEncoding.
    void finish(TimeMs arrival, Frames& frames);

    /// Something that the user should hear of the stream, once: that it is silent for long though bytes come.
    /// Empty when there is nothing.
    std::string complaint();

    /// Whether frames are held back until more has come, or nothing has come of the last bytes.
    bool isUnsettled() const { return _framer.heldBack() > 0 || !_held.empty() || _frameless.bytes() > 0; }

    std::optional<Encoding> encoding() const { return _framer.encoding(); } ///< once it is known
    FrameClock const& clock() const { return _clock; }

private:
    void handOver(TimeMs arrival, bool isWhole, Frames& frames);

    Counters& _counters;
    Framer _framer;
    FrameClock _clock;
    FramelessSpan _frameless;
    std::string _complaint;
    Frames _held; // until it is known how their stamps count
};

} // namespace quorvel::host
