// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/airspace_export.h>
#include <airspace/counts.h>
#include <airspace/encoding.h>
#include <airspace/frame.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace quorvel::airspace {

/// How the time of a frame follows from its time stamp.
enum class TimeReading : std::uint8_t {
    Auto,         ///< detected: counter or time of day by their rate, arrival or nothing without stamps
    Receiver,     ///< 18 bits second of the UTC day, 30 bits nanosecond
    Counter12MHz, ///< ticks since the receiver was switched on
    Arrival,      ///< the host's clock when the frame came
    Fixed,        ///< one time for all
};

/// How a stream is dated.
struct TimeOptions {
    TimeReading reading = TimeReading::Auto; ///< how time stamps are read
    TimeMs start = 0; ///< the date, or date and time, at which the stream starts; 0 when not known
};

/// Where a stream comes from, and so what the host's clock says about it.
enum class Origin : std::uint8_t {
    Recording,  ///< nothing: the same recording gives the same times
    Pipe,       ///< the date, and the time of frames without one; it may be a receiver's or a recording's
    Connection, ///< the present time
};

/// How a stream is to be read.
struct StreamOptions {
    std::optional<Encoding> encoding;  ///< detected from the first bytes when not given
    TimeOptions time;                  ///< how it is dated
    Origin origin = Origin::Recording; ///< where it comes from
    std::uint64_t receiver = 0;        ///< for frames whose receiver the stream itself does not name
};

/// Makes dated frames out of the bytes of one stream: a recording, or one connection to a receiver.
///
///     airspace::Stream stream;
///     airspace::Frames frames;
///     while (auto const piece = more()) stream.feed(*piece, now(), frames);
///     stream.finish(now(), frames);
///
/// The bytes may be cut anywhere. The encoding is detected or given; the doubling of escape bytes in Beast streams is
/// removed, records about the receiver itself are read (identity) or counted (status, position), and what belongs to no
/// frame is skipped and counted by reason.
///
/// Every frame gets its time. A time of day that steps back by more than half a day is the next day's; one
/// that steps forward by as much is a late frame of the day before. A counter is anchored where it begins,
/// unwrapped at 48 bits, and anchored again after a jump. One damaged stamp does not move the present, a
/// stream that stays where it went does. The date of a recording is not in its frames: without one its times
/// are those of 1970-01-02, and `timeKnown` says so.
///
/// What stamps count is detected from their rate: against the half second between the positions of an aircraft
/// (RTCA DO-260B, 2.2.3.3.2.2), and of a connection against arrival; never by whether they agree with the
/// host's clock. A receiver that keeps another time than the host keeps its own, on the nearest day. The
/// frames of a live stream with too little traffic to decide have the times of arrival until it is known.
///
/// It has no clock: `arrival` is the host's, in ms since 1970-01-01 00:00:00 UTC; for a recording it may be
/// 0. Nothing throws but std::bad_alloc. One stream is used from one thread at a time; separate ones share
/// nothing. Once warm, no memory is allocated for a frame.
class TREVALLO_AIRSPACE_EXPORT Stream {
public:
    /// A stream that has received nothing yet.
    explicit Stream(StreamOptions const& options = {});
    ~Stream();

    /// Takes over all that the other holds; that one can only be destroyed or assigned to.
    Stream(Stream&&) noexcept;
    Stream& operator=(Stream&&) noexcept;

    /// Appends the frames that the next bytes complete. The start of a stream is held back until its
    /// encoding is known, and frames until it is known how their time stamps count. False, from then on, when
    /// the encoding cannot be detected: `otherContent` may say what it is.
    bool feed(std::string_view bytes, TimeMs arrival, Frames& frames);

    /// Decides from what has come so far, for live streams on which little happens: no frame is held back any more.
    /// False as above, when the encoding is certainly unknown.
    bool settle(TimeMs arrival, Frames& frames);

    /// Appends what is left at the end of the stream. False as above.
    bool finish(TimeMs arrival, Frames& frames);

    /// Something that the user should know about the stream, once: that bytes come and no frames, or how its
    /// time stamps were found to count. Empty when there is nothing.
    std::string remark();

    /// Whether frames are held back until more has come, or nothing has come of the last bytes.
    bool isUnsettled() const;

    /// What a stream of unknown encoding is: "a web page", "BaseStation text", "JSON"; empty when that is not known
    /// either.
    std::string_view otherContent() const;

    std::optional<Encoding> encoding() const; ///< once it is known
    TimeReading timeReading() const;          ///< `Auto` until it is detected

    /// Whether times are of a known day.
    bool timeKnown() const;

    /// The present of the stream: the latest time, except for damaged stamps; 0 before the first frame.
    TimeMs now() const;

    Counts const& counts() const; ///< of framing and time

private:
    struct TREVALLO_HIDDEN Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace quorvel::airspace
