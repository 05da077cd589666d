// SPDX-License-Identifier: MIT
// Tracking, for each kind of message, with few to many targets: messages decoded beforehand, the targets
// known to the tracker and visited in turn, in an order that has nothing to do with their addresses.
#include "support/bench_frames.h"
#include "support/measure.h"
#include "support/streams.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace quorvel::modes::bench {

namespace {

constexpr unsigned kAnyTypeCode = 0;

struct Kind {
    char const* name;
    DFMessage::DownlinkFormat format;
    unsigned firstTypeCode = kAnyTypeCode;
    unsigned lastTypeCode = kAnyTypeCode;
};
constexpr Kind kKinds[] = {
    {"surveillance_altitude", DFMessage::DF4},
    {"surveillance_identity", DFMessage::DF5},
    {"all_call", DFMessage::DF11},
    {"identification", DFMessage::DF17, 1, 4},
    {"airborne_position", DFMessage::DF17, 9, 18},
    {"airborne_velocity", DFMessage::DF17, 19, 19},
    {"operational_status", DFMessage::DF17, 31, 31},
};
using KindIndex = std::size_t;

unsigned typeCode(std::string const& frame) { return static_cast<unsigned char>(frame[4]) >> 3; }

// The kind of a frame, the number of kinds for any other.
KindIndex kindOf(std::string const& frame) {
    auto const isOf = [&](Kind const& kind) {
        if (kind.format != downlinkFormat(frame)) return false;
        if (kind.firstTypeCode == kAnyTypeCode) return true;
        return kind.firstTypeCode <= typeCode(frame) && typeCode(frame) <= kind.lastTypeCode;
    };
    return static_cast<KindIndex>(std::find_if(std::begin(kKinds), std::end(kKinds), isOf) - kKinds);
}

// Twice round the targets: position messages come as even and odd ones in turn.
constexpr std::size_t kRounds = 2;

struct Frame {
    unsigned long long timeStamp = 0;
    std::string bytes;
};

// What an aircraft has sent of each kind, the first frames of it.
using Sent = std::array<std::array<Frame, kRounds>, std::size(kKinds)>;

bool isComplete(Sent const& sent) {
    return std::none_of(sent.begin(), sent.end(), [](auto const& frames) { return frames.back().bytes.empty(); });
}

void keep(Sent& sent, KindIndex kind, ModeSEncapsulation const& frame) {
    auto& frames = sent[kind];
    auto const free = std::find_if(frames.begin(), frames.end(), [](auto const& f) { return f.bytes.empty(); });
    if (free != frames.end()) *free = {frame.timeStamp(), frame.data()};
}

struct Sky {
    ModeSDecoder decoder;       // which has heard all aircraft
    std::vector<Sent> aircraft; // those that have sent enough of each kind
};

// Frames are kept as bytes and one after the other: a heap full of holes would slow down all benchmarks.
Sky makeSky() {
    Sky sky;
    auto const& bytes = stream("intact_10000.beast");
    auto const decode = [&](auto const& frame) { return sky.decoder.decode(ModeSMessage::DOWNLINK, frame); };
    forEachFrame(bytes, ModeSEncapsulation::Beast, decode);

    std::map<unsigned, Sent> byAddress;
    forEachFrame(bytes, ModeSEncapsulation::Beast, [&](auto const& frame) {
        auto const kind = kindOf(frame->data());
        if (kind < std::size(kKinds)) keep(byAddress[decode(frame)->icaoAddress()], kind, *frame);
    });
    for (auto& [address, sent] : byAddress) {
        if (isComplete(sent)) sky.aircraft.push_back(std::move(sent));
    }
    std::shuffle(sky.aircraft.begin(), sky.aircraft.end(), Random());
    return sky;
}

void track(benchmark::State& state, KindIndex kind) {
    static auto const sky = makeSky();
    auto const targets = static_cast<std::size_t>(state.range(0));
    if (sky.aircraft.size() < targets) return state.SkipWithError("too few aircraft have sent everything");

    auto decoder = sky.decoder;
    auto const decode = [&](Frame const& frame) {
        return decoder.decode(ModeSMessage::DOWNLINK, frame.bytes, frame.timeStamp);
    };
    ADSBTracker tracker;
    for (std::size_t i = 0; i < targets; ++i) {
        for (auto const& frames : sky.aircraft[i]) {
            for (auto const& frame : frames) tracker.procModeSMsg(decode(frame));
        }
    }
    std::vector<std::shared_ptr<ModeSMessage>> messages;
    for (std::size_t round = 0; round < kRounds; ++round) {
        for (std::size_t i = 0; i < targets; ++i) messages.push_back(decode(sky.aircraft[i][kind][round]));
    }
    bool tracked = true;
    takeTurns(state, messages, [&](auto const& message) { tracked &= tracker.procModeSMsg(message) != nullptr; });
    if (!tracked) state.SkipWithError("a message did not reach its target");
}

[[maybe_unused]] bool const registered = [] {
    for (KindIndex kind = 0; kind < std::size(kKinds); ++kind) {
        auto const name = std::string("track/") + kKinds[kind].name;
        benchmark::RegisterBenchmark(name.c_str(), track, kind)->Arg(200)->Arg(1000)->Arg(4000);
    }
    return true;
}();

} // namespace

} // namespace quorvel::modes::bench
