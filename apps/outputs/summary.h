// SPDX-License-Identifier: MIT
#pragma once

#include "outputs/output.h"

#include <memory>
#include <string>

namespace quorvel::outputs {

/// A line of the most important counts at the end, or all that are not 0.
class Summary : public Output {
public:
    Summary(std::unique_ptr<Sink> sink, bool isWhole);

    bool wantsPicture() override { return false; }
    void finish(Picture const& last) override;

private:
    std::unique_ptr<Sink> _sink;
    bool _isWhole;
};

/// All counts that are not 0, on standard error at the end.
class StderrSummary : public Output {
public:
    bool wantsPicture() override { return false; }
    bool isWorthRunningFor() const override { return false; }
    void finish(Picture const& last) override;
};

/// "14662 frames, 14574 decoded, 14427 tracked, 25 aircraft".
std::string summaryLine(Picture const& picture);

/// A line for each count that is not 0: the count and what it counts.
std::string allCounts(Counters const& counters);

} // namespace quorvel::outputs
