// SPDX-License-Identifier: MIT
#pragma once

#include "outputs/output.h"

#include <string>

namespace quorvel::outputs {

/// BaseStation text: a line of 22 comma-separated fields for each message that reported something about an aircraft,
/// ended by CR LF. A field is filled when this message itself carried it, so that a logger never takes old
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

/// The line of one reply; empty for replies of kinds that the format does not have, and of no aircraft.
std::string sbsLine(HeardFrame const& heard);

} // namespace quorvel::outputs
