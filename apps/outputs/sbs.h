// SPDX-License-Identifier: MIT
#pragma once

#include "host/output.h"

#include <string>

namespace quorvel::host {

/// BaseStation text: a line of 22 comma-separated fields for each message that told something of an aircraft,
/// ended by CR LF. A field is filled when this very message brought it, so that a logger never takes old
/// values for new ones. Dates and times are UTC.
class Sbs : public Output {
public:
    explicit Sbs(std::unique_ptr<Sink> sink);

    Wants wants() const override { return Wants::FramesWithAircraft; }
    void heard(HeardFrame const& heard) override;
    bool wantsPicture() override { return false; }
    void flush() override;
    void finish(Picture const&) override { flush(); }

private:
    std::unique_ptr<Sink> _sink;
};

/// The line of one message; empty for messages of kinds that the format does not have.
std::string sbsLine(modes::ModeSMessage const& message, modes::ADSBTargetReport const& report);

} // namespace quorvel::host
