// SPDX-License-Identifier: MIT
#include "trevallo/truth_lines.h"

#include "files/stop_signals.h"
#include "inspect/frame_text.h"
#include "inspect/json_members.h"
#include "simulate/flight_truth.h"

#include <cmath>

namespace quorvel::program {

namespace {

constexpr std::uint64_t kSecond = 1'000'000'000; // nanoseconds

double toMillionths(double value) { return std::round(value * 1e6) / 1e6; }

// Values to the sixth digit: a tenth of a metre of a place.
class Members {
public:
    explicit Members(std::string& line) : _members(line) {}

    void operator()(std::string_view name, double value) { _members(name, toMillionths(value)); }
    template <class Value> void operator()(std::string_view name, Value value) { _members(name, value); }

    void finish() { _members.finish(); }

private:
    inspect::JsonMembers _members;
};

std::string stateLine(simulate::Aircraft const& aircraft, std::uint64_t second, double time) {
    std::string line;
    Members members(line);
    members("time", time);
    simulate::visitTruth(members, aircraft, aircraft.at(static_cast<double>(second)));
    members.finish();
    return line;
}

std::string registerLine(simulate::Frame const& frame, simulate::Aircraft const& aircraft, double time) {
    std::string line;
    Members members(line);
    members("time", time);
    members("icao", std::string_view(simulate::addressText(aircraft.profile())));
    members("hex", std::string_view(inspect::hexText(frame.bytes)));
    members("bds", std::string_view(simulate::registerText(frame.registerNumber)));
    members("damaged", frame.damaged);
    members.finish();
    return line;
}

} // namespace

TruthLines::TruthLines(std::string const& target, simulate::Traffic const& traffic, std::uint64_t startOfDay)
    : _output(target), _traffic(traffic), _startOfDay(startOfDay) {}

void TruthLines::take(simulate::Frame const& frame) {
    writeUpTo(frame.nanoseconds);
    if (frame.registerNumber == 0) return;
    auto const time = static_cast<double>(_startOfDay + frame.nanoseconds) / 1e9;
    _output.write(registerLine(frame, _traffic.aircraft()[frame.aircraft], time));
}

void TruthLines::finish(std::uint64_t end) {
    writeUpTo(end);
    _output.finish();
}

void TruthLines::writeUpTo(std::uint64_t nanoseconds) {
    for (; _second * kSecond <= nanoseconds && !files::StopSignals::requested(); ++_second) {
        auto const time = static_cast<double>(_startOfDay + _second * kSecond) / 1e9;
        for (auto const& aircraft : _traffic.aircraft()) _output.write(stateLine(aircraft, _second, time));
    }
}

} // namespace quorvel::program
