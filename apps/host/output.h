// SPDX-License-Identifier: MIT
#pragma once

#include <modes/modes_message.h>

#include "host/aircraft.h"
#include "host/frame.h"

#include <memory>
#include <string_view>

namespace quorvel::host {

/// What became of one frame.
struct HeardFrame {
    Frame const& frame;
    modes::ModeSMessage const* message; ///< null when it could not be decoded
    Aircraft const*
        aircraft; ///< after the message; null when it gave nothing to a target, or no output asked for it
};

/// One way of telling the outside what is heard. All are driven from one thread.
class Output {
public:
    virtual ~Output() = default;

    /// Whether `heard` wants to be called, and with the aircraft filled in.
    enum class Wants { Pictures, EachFrame, FramesWithAircraft };
    virtual Wants wants() const { return Wants::Pictures; }

    /// Whether there is something to run for while no other output is left.
    virtual bool isWorthRunningFor() const { return true; }

    /// Each Mode S frame, in the order of reception. Mode A/C replies come with no message.
    virtual void heard(HeardFrame const&) {}

    /// Whether a picture would be of use now. Making one takes its time, so none is made that nobody wants.
    virtual bool wantsPicture() { return true; }

    /// Once for each second of the stream's time, or of the clock for live sources.
    virtual void picture(Picture const&) {}

    /// Hands on what was collected: whenever nothing more has come for the moment.
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

    /// Hands on what was collected. Throws HostError when a file cannot be written.
    virtual void flush() = 0;
};

} // namespace quorvel::host
