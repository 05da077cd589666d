// SPDX-License-Identifier: MIT
#pragma once

#include "outputs/output.h"
#include "run/failures.h"

#include <functional>
#include <memory>
#include <vector>

namespace quorvel::run {

/// The outputs of a run. One that fails is dropped, and the others continue.
class OutputSet {
public:
    /// `allGone` is called when the last output worth running for has failed.
    OutputSet(Failures& failures, std::function<void()> allGone);

    void add(std::unique_ptr<outputs::Output> output);

    /// Whether any output wants frames, and with their aircraft.
    bool wantsFrames() const { return _wantsFrames; }
    bool wantsAircraft() const { return _wantsAircraft; }

    void heard(outputs::HeardFrame const& frame);

    /// Makes a picture for those that want one; none is made when nobody does.
    void show(std::function<outputs::Picture()> const& picture);

    void flush();
    void finish(outputs::Picture const& last);

private:
    template <class Step> void forEach(Step const& step);
    bool isAnyWorthRunningFor() const;

    Failures& _failures;
    std::function<void()> _allGone;
    std::vector<std::unique_ptr<outputs::Output>> _outputs;
    bool _wantsFrames = false;
    bool _wantsAircraft = false;
};

} // namespace quorvel::run
