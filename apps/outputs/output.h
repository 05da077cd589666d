// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/frame.h>
#include <airspace/reply.h>

#include "outputs/picture.h"

#include <memory>
#include <string_view>

namespace quorvel::outputs {

/// What happened to one frame.
struct HeardFrame {
    airspace::Frame const& frame;
    airspace::Reply const& reply;

    /// After the reply; null when it was given to no aircraft, or no output asked for it.
    Aircraft const* aircraft;
};

/// One way to report what is heard. All are driven from one thread.
class Output {
public:
    virtual ~Output() = default;

    /// Whether `heard` wants to be called, and with the aircraft filled in.
    enum class Wants { Pictures, EachFrame, FramesWithAircraft };
    virtual Wants wants() const { return Wants::Pictures; }

    /// Whether the run should go on for this output alone.
    virtual bool isWorthRunningFor() const { return true; }

    /// Each Mode S frame, in the order of reception. Mode A/C replies mean nothing.
    virtual void heard(HeardFrame const&) {}

    /// Whether a picture would be of use now. Making one takes time, so none is made unless some output wants it.
    virtual bool wantsPicture() { return true; }

    /// Once for each second of the stream's time, or of the clock for live sources.
    virtual void picture(Picture const&) {}

    /// Passes on what was collected: called whenever nothing more has come for the moment.
    virtual void flush() {}

    /// The last picture, at the end.
    virtual void finish(Picture const& last) { picture(last); }
};

/// Where text or binary items go: a file, standard output, or the readers of a TCP port. An item (a line, a
/// frame) reaches each reader whole or not at all.
class Sink {
public:
    virtual ~Sink() = default;
    virtual void write(std::string_view item) = 0;

    /// Passes on what was collected. Throws HostError when a file cannot be written.
    virtual void flush() = 0;
};

} // namespace quorvel::outputs
