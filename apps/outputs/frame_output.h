// SPDX-License-Identifier: MIT
#pragma once

#include "host/encoding.h"
#include "host/output.h"

namespace quorvel::host {

/// Hands frames on in one of the encodings, as they were received: repairs change nothing in them.
///
/// `NONE` as least confidence passes everything, undecodable frames and Mode A/C replies included; `LOW`
/// what could be decoded; `MEDIUM` and `HIGH` what is also believed.
class FrameOutput : public Output {
public:
    using Confidence = modes::ModeSMessage::Confidence;

    FrameOutput(std::unique_ptr<Sink> sink, Encoding encoding, Confidence least);

    Wants wants() const override { return Wants::EachFrame; }
    void heard(HeardFrame const& heard) override;
    bool wantsPicture() override { return false; }
    void flush() override;
    void finish(Picture const&) override { flush(); }

private:
    bool passes(HeardFrame const& heard) const;

    std::unique_ptr<Sink> _sink;
    Encoding _encoding;
    Confidence _least;
    std::string _item;
};

} // namespace quorvel::host
