// SPDX-License-Identifier: MIT
// Readings by the standards: of squitters, of Comm-B replies whose register is to be chosen, of parity alone, and of
// positions.
#include "support/bench_frames.h"
#include "support/measure.h"

#include <airspace/compact_position.h>
#include <airspace/message.h>
#include <airspace/register_choice.h>

#include <cmath>

namespace quorvel::modes::bench {

namespace {

using airspace::CompactPosition;
using airspace::KnownState;

// A Comm-B reply of an aircraft that also squitters.
struct Reply {
    std::string frame;
    KnownState known;
};

// The 56 bits of a register, of values with their status bit in front of them, in two's complement below 0.
class RegisterWriter {
public:
    RegisterWriter& value(unsigned status, unsigned last, double value, double step) {
        auto const width = last - status;
        auto const code = static_cast<std::uint64_t>(std::lround(value / step)) & ((std::uint64_t{1} << width) - 1);
        _bits |= (std::uint64_t{1} << width | code) << (56 - last);
        return *this;
    }

    std::string bytes() const {
        std::string bytes;
        for (int shift = 48; shift >= 0; shift -= 8) bytes += static_cast<char>(_bits >> shift & 0xFF);
        return bytes;
    }

private:
    std::uint64_t _bits = 0;
};

std::string selectedIntention(int altitudeFt) {
    return RegisterWriter().value(1, 13, altitudeFt + 2000, 16).value(27, 39, 213.2, 0.1).bytes();
}

std::string trackAndTurn(KnownState const& known, int roll) {
    return RegisterWriter()
        .value(1, 11, roll, 45.0 / 256)
        .value(12, 23, std::remainder(*known.trackDegrees, 360.0), 90.0 / 512)
        .value(24, 34, *known.groundSpeedKt, 2)
        .value(35, 45, roll * 0.04, 8.0 / 256)
        .value(46, 56, *known.groundSpeedKt - 20, 2)
        .bytes();
}

std::string headingAndSpeed(KnownState const& known, int rate) {
    return RegisterWriter()
        .value(1, 12, std::remainder(*known.trackDegrees + 4, 360.0), 90.0 / 512)
        .value(13, 23, 270, 1)
        .value(24, 34, 0.79, 2.048 / 512)
        .value(35, 45, rate, 32)
        .value(46, 56, rate, 32)
        .bytes();
}

// The three registers that ground stations ask for in turn.
std::string registerOf(KnownState const& known, int number) {
    switch (number % 3) {
    case 0: return selectedIntention(*known.altitudeFt);
    case 1: return trackAndTurn(known, number % 11 - 5);
    default: return headingAndSpeed(known, *known.verticalRateFtMin);
    }
}

std::vector<Reply> commBReplies() {
    constexpr int kReplies = 600;
    std::vector<Reply> replies;
    for (int number = 0; number < kReplies; ++number) {
        KnownState known;
        known.altitudeFt = 30'000 + 25 * (number % 300);
        known.groundSpeedKt = 420.0 + number % 60;
        known.trackDegrees = number * 7 % 360;
        known.verticalRateFtMin = 64 * (number % 21 - 10);
        auto frame = std::string("\xA0\x00\x18\x38", 4) + registerOf(known, number) + std::string(3, '\0');
        setParity(frame, DF20Message().calculateParity(frame) ^ scatteredAddress(static_cast<std::size_t>(number)));
        replies.push_back({std::move(frame), known});
    }
    return replies;
}

void readSquitter(benchmark::State& state) {
    std::vector<std::string> frames;
    for (auto const& frame : intactFrames(DFMessage::DF17)) frames.push_back(frame->data());
    takeTurns(state, frames, [](auto const& frame) { benchmark::DoNotOptimize(airspace::read(frame)); });
}
BENCHMARK(readSquitter)->Name("read/squitter");

void readCommB(benchmark::State& state) {
    takeTurns(state, commBReplies(), [](auto const& reply) {
        benchmark::DoNotOptimize(airspace::read(reply.frame));
        auto const mb = std::string_view(reply.frame).substr(4, 7);
        benchmark::DoNotOptimize(airspace::chooseRegister(mb, reply.known));
    });
}
BENCHMARK(readCommB)->Name("read/comm_b");

// Even and odd positions by turns, as they come.
std::vector<CompactPosition> positions() {
    std::vector<CompactPosition> positions;
    for (auto const& frame : intactFrames(DFMessage::DF17)) {
        auto const message = airspace::read(frame->data());
        auto const* const squitter = std::get_if<airspace::ExtendedSquitter>(&message);
        auto const* const airborne = squitter ? std::get_if<airspace::AirbornePosition>(&squitter->content) : nullptr;
        if (airborne) positions.push_back(airborne->position);
    }
    return positions;
}

void localPosition(benchmark::State& state) {
    takeTurns(state, positions(), [](CompactPosition const& position) {
        benchmark::DoNotOptimize(airspace::localPosition(position, {50.0, 8.0}));
    });
}
BENCHMARK(localPosition)->Name("position/local");

void globalPosition(benchmark::State& state) {
    std::vector<std::pair<CompactPosition, CompactPosition>> pairs;
    for (auto position : positions()) {
        auto older = position;
        older.isOdd = !position.isOdd;
        older.latitude = (position.latitude + 5'000) % (1 << 17);
        pairs.emplace_back(older, position);
    }
    takeTurns(state, pairs,
        [](auto const& pair) { benchmark::DoNotOptimize(airspace::globalPosition(pair.first, pair.second)); });
}
BENCHMARK(globalPosition)->Name("position/global");

} // namespace

} // namespace quorvel::modes::bench
