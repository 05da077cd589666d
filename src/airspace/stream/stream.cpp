// SPDX-License-Identifier: MIT
#include <airspace/stream.h>

#include "airspace/stream/frame_clock.h"
#include "airspace/stream/frameless_span.h"
#include "airspace/stream/framer.h"
#include "airspace/stream/stream_encoding.h"

#include <span>
#include <utility>

namespace quorvel::airspace {

struct Stream::Impl {
    explicit Impl(StreamOptions const& options)
        : isRecording(options.origin == Origin::Recording)
        , framer(options.encoding, options.receiver, counts)
        , clock(options.time, options.origin) {}

    // Takes note of what came of the last bytes; false when nothing can come of the stream.
    bool judge(bool isKnown) {
        if (!isKnown) other = findOtherContent(framer.heldBack());
        return isKnown;
    }

    TimeMs received(TimeMs arrival);
    void handOver(TimeMs received, TimeMs arrival, bool isWhole, Frames& frames);
    void stamp(Frame& frame, TimeMs received);

    // Frames that can be dated at once need not be held.
    bool isHolding() const { return !clock.isSettled() || !held.empty(); }

    bool isRecording;
    Counts counts;
    Framer framer;
    FrameClock clock;
    FramelessSpan frameless;
    std::string remark;
    TimeMs begun = 0;       // to arrive: what the framer holds back
    std::string_view other; // what the stream is instead
    Frames held;            // until it is known how their stamps count; their times are those of arrival
    std::size_t looked = 0; // at so many of them
    bool holds = true;      // until none is waiting
};

// When what the framer gives next was received. All that it holds back until the encoding is known may come at once, long
// after the first of it: a counter that was anchored then would run ahead of the host for good.
TimeMs Stream::Impl::received(TimeMs arrival) {
    if (framer.encoding()) return arrival;
    if (framer.heldBack().empty()) begun = arrival;
    return begun;
}

void Stream::Impl::handOver(TimeMs received, TimeMs arrival, bool isWhole, Frames& frames) {
    if (held.empty() && !isWhole) return;
    auto const next = std::span(held).subspan(looked);
    for (auto& frame : next) frame.time = received;
    looked = held.size();
    if (!clock.settle(next, arrival, isWhole) && holds) return;
    for (auto& frame : held) stamp(frame, frame.time);
    frames.insert(frames.end(), held.begin(), held.end());
    held.clear();
    looked = 0;
}

void Stream::Impl::stamp(Frame& frame, TimeMs received) {
    clock.stamp(frame, received, counts);
    ++(frame.isModeAc() ? counts.modeAcFrames : counts.frames);
}

Stream::Stream(StreamOptions const& options) : _impl(std::make_unique<Impl>(options)) {}
Stream::~Stream() = default;
Stream::Stream(Stream&&) noexcept = default;
Stream& Stream::operator=(Stream&&) noexcept = default;

bool Stream::feed(std::string_view bytes, TimeMs arrival, Frames& frames) {
    auto& self = *_impl;
    bool const isHolding = self.isHolding();
    auto& cut = isHolding ? self.held : frames;
    auto const before = cut.size();
    auto const received = self.received(arrival);
    if (!self.judge(self.framer.feed(bytes, cut))) return false;
    if (encoding() && self.frameless.take(bytes, cut.size() > before)) self.remark = self.frameless.text(encoding());
    if (isHolding) {
        self.handOver(received, arrival, false, frames);
    } else {
        for (auto& frame : std::span(frames).subspan(before)) self.stamp(frame, received);
    }
    return true;
}

bool Stream::settle(TimeMs arrival, Frames& frames) {
    auto& self = *_impl;
    auto const received = self.received(arrival);
    if (!self.judge(self.framer.settle(self.held))) return false;
    if (!self.held.empty()) {
        self.holds = self.isRecording; // which is judged once; live streams are judged again and again
        self.handOver(received, arrival, self.isRecording, frames);
    }
    if (self.frameless.settle(encoding())) self.remark = self.frameless.text(encoding());
    return true;
}

bool Stream::finish(TimeMs arrival, Frames& frames) {
    auto& self = *_impl;
    auto const before = self.held.size();
    auto const received = self.received(arrival);
    if (!self.judge(self.framer.finish(self.held))) return false;
    self.frameless.take({}, self.held.size() > before);
    if (self.frameless.finish(encoding())) self.remark = self.frameless.text(encoding());
    self.handOver(received, arrival, true, frames);
    return true;
}

std::string Stream::remark() {
    auto remark = std::exchange(_impl->remark, {});
    return remark.empty() ? _impl->clock.takeRemark() : remark;
}

bool Stream::isUnsettled() const {
    return !_impl->framer.heldBack().empty() || !_impl->held.empty() || _impl->frameless.bytes() > 0;
}

std::string_view Stream::otherContent() const { return _impl->other; }
std::optional<Encoding> Stream::encoding() const { return _impl->framer.encoding(); }
TimeReading Stream::timeReading() const { return _impl->clock.reading(); }
bool Stream::timeKnown() const { return _impl->clock.timeKnown(); }
TimeMs Stream::now() const { return _impl->clock.now(); }
Counts const& Stream::counts() const { return _impl->counts; }

} // namespace quorvel::airspace
