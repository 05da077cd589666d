// SPDX-License-Identifier: MIT
#pragma once

#include "outputs/output.h"
#include <airspace/encoding.h>

namespace quorvel::outputs {

/// Passes frames on in one of the encodings, as they were received: repairs change nothing in them.
///
/// `NONE` as least confidence passes everything, undecodable frames and Mode A/C replies included; `LOW`
/// what could be decoded; `MEDIUM` and `HIGH` what is also trusted.
class FrameOutput : public Output {
public:
    using Confidence = modes::ModeSMessage::Confidence;

    FrameOutput(std::unique_ptr<Sink> sink, airspace::Encoding encoding, Confidence least);

    Wants wants() const override { return Wants::EachFrame; }
    void heard(HeardFrame const& heard) override;
    bool wantsPicture() override { return false; }
    void flush() override;
    void finish(Picture const&) override { flush(); }

private:
    bool passes(HeardFrame const& heard) const;

    std::unique_ptr<Sink> _sink;
    airspace::Encoding _encoding;
    Confidence _least;
    std::string _item;
};

} // namespace quorvel::outputs
