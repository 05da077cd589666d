// SPDX-License-Identifier: MIT
// What a host asks of a tracker with 4,000 targets, and of one target.
#include "support/bench_frames.h"
#include "support/measure.h"
#include "support/streams.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>

namespace quorvel::modes::bench {

namespace {

constexpr std::size_t kChanged = 10;

bool isComplete(std::shared_ptr<ADSBTarget> const& target) {
    return target->callsignValid() && target->squawkValid() && target->positionValid() && target->altitudeBaroValid() &&
           target->groundSpeedValid() && target->mopsVersionConfirmed();
}

struct Traffic {
    Receiver receiver;
    unsigned long long lastUpdate = 0;  // of all targets but the few that have changed since
    std::shared_ptr<ADSBTarget> target; // of which everything is known

    // After all frames of the stream, the first few of them come again a millisecond later.
    Traffic() {
        auto const& bytes = stream("aircraft_4000.beast");
        receiver.take(bytes, ModeSEncapsulation::Beast);
        auto const targets = tracker().allTargets();
        for (auto const& known : targets) lastUpdate = std::max(lastUpdate, known->lastUpdate());
        auto const complete = std::find_if(targets.begin(), targets.end(), isComplete);
        if (complete == targets.end()) throw std::runtime_error("no target of which everything is known");
        target = *complete;
        for (auto const& frame : framesOf(bytes.substr(0, kPieceSize))) {
            if (tracker().allTargetsSince(lastUpdate).size() == kChanged) break;
            tracker().procModeSMsg(receiver.decoder.decode(ModeSMessage::DOWNLINK, frame->data(), lastUpdate + 1));
        }
    }

    ADSBTracker& tracker() { return receiver.tracker; }
};

Traffic& traffic() {
    static Traffic result;
    return result;
}

void changedTargets(benchmark::State& state) {
    auto const& tracker = traffic().tracker();
    auto const lastUpdate = traffic().lastUpdate;
    std::size_t changed = 0;
    for (auto _ : state) changed = tracker.allTargetsSince(lastUpdate).size();
    if (changed != kChanged) state.SkipWithError("not as many targets as have changed");
}
BENCHMARK(changedTargets)->Name("targets/changed_10_of_4000");

void killStaleTargets(benchmark::State& state) {
    auto& tracker = traffic().tracker();
    std::size_t killed = 0;
    for (auto _ : state) killed += tracker.killTargets(1).size();
    if (killed != 0) state.SkipWithError("no target was stale");
}
BENCHMARK(killStaleTargets)->Name("targets/kill_none_of_4000");

void report(benchmark::State& state) {
    auto const& target = traffic().target;
    for (auto _ : state) {
        auto const made = target->report();
        benchmark::DoNotOptimize(made.get());
    }
}
BENCHMARK(report)->Name("target/report");

void page(benchmark::State& state) {
    auto const made = traffic().target->report();
    std::string const style = "table.general_table { border: 1px solid; }";
    for (auto _ : state) {
        auto const html = made->toHtml(style);
        benchmark::DoNotOptimize(html.data());
    }
}
BENCHMARK(page)->Name("target/page");

} // namespace

} // namespace quorvel::modes::bench
