// SPDX-License-Identifier: MIT
#pragma once

#include "outputs/output.h"

namespace quorvel::outputs {

/// The aircraft as a table of plain text, once, at the end.
class TextTable : public Output {
public:
    explicit TextTable(std::unique_ptr<Sink> sink);

    bool wantsPicture() override { return false; }
    void finish(Picture const& last) override;

private:
    std::unique_ptr<Sink> _sink;
};

} // namespace quorvel::outputs
