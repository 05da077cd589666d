// SPDX-License-Identifier: MIT
#include "run/output_set.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

namespace quorvel::run {

OutputSet::OutputSet(Failures& failures, std::function<void()> allGone)
    : _failures(failures), _allGone(std::move(allGone)) {}

void OutputSet::add(std::unique_ptr<outputs::Output> output) {
    auto const wants = output->wants();
    _wantsFrames = _wantsFrames || wants != outputs::Output::Wants::Pictures;
    _wantsAircraft = _wantsAircraft || wants == outputs::Output::Wants::FramesWithAircraft;
    _outputs.push_back(std::move(output));
}

void OutputSet::heard(outputs::HeardFrame const& frame) {
    forEach([&](outputs::Output& output) {
        if (output.wants() != outputs::Output::Wants::Pictures) output.heard(frame);
    });
}

void OutputSet::show(std::function<outputs::Picture()> const& picture) {
    std::optional<outputs::Picture> shown;
    forEach([&](outputs::Output& output) {
        if (output.wantsPicture()) {
            if (!shown) shown = picture();
            output.picture(*shown);
        }
        output.flush();
    });
}

void OutputSet::flush() {
    forEach([](outputs::Output& output) { output.flush(); });
}

void OutputSet::finish(outputs::Picture const& last) {
    forEach([&](outputs::Output& output) {
        output.finish(last);
        output.flush();
    });
}

template <class Step> void OutputSet::forEach(Step const& step) {
    bool const were = isAnyWorthRunningFor();
    for (auto output = _outputs.begin(); output != _outputs.end();) {
        bool const works = _failures.attempt([&] { step(**output); });
        output = works ? std::next(output) : _outputs.erase(output);
    }
    if (were && !isAnyWorthRunningFor()) _allGone();
}

bool OutputSet::isAnyWorthRunningFor() const {
    return std::any_of(
        _outputs.begin(), _outputs.end(), [](auto const& output) { return output->isWorthRunningFor(); });
}

} // namespace quorvel::run
