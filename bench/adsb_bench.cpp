// SPDX-License-Identifier: MIT
// Decoding of ADS-B payloads, for each type of message and each version that has it.
#include "support/bench_frames.h"
#include "support/measure.h"

#include <string>
#include <vector>

namespace quorvel::modes::bench {

namespace {

constexpr std::size_t kPayloadPosition = 4;
constexpr std::size_t kPayloadBytes = 7;

// What the aircraft send, and a test message, which they do not.
std::vector<std::string> payloads() {
    std::vector<std::string> result{std::string("\xB8\0\1\2\3\4\5", kPayloadBytes)};
    for (auto const& frame : intactFrames(DFMessage::DF17))
        result.push_back(frame->data().substr(kPayloadPosition, kPayloadBytes));
    return result;
}

void decodePayload(benchmark::State& state, ADSBMessage::ADSBMessageType type, MOPSVersion version) {
    ADSBDecoder const decoder;
    std::vector<std::string> decodable;
    for (auto const& payload : payloads()) {
        auto const message = decoder.decode(version, payload);
        if (message && message->type() == type) decodable.push_back(payload);
    }
    takeTurns(state, decodable, [&](auto const& payload) {
        auto const message = decoder.decode(version, payload);
        benchmark::DoNotOptimize(message.get());
    });
}

struct Kind {
    char const* name;
    ADSBMessage::ADSBMessageType type;
    MOPSVersion firstVersion;
};
constexpr Kind kKinds[] = {
    {"identification", ADSBMessage::ACID, MOPS_V0},
    {"surface_position", ADSBMessage::POS_GND, MOPS_V0},
    {"airborne_position", ADSBMessage::POS_AIR, MOPS_V0},
    {"airborne_velocity", ADSBMessage::AIR_VEL, MOPS_V0},
    {"test", ADSBMessage::TEST, MOPS_V0},
    {"aircraft_status", ADSBMessage::AC_STATUS, MOPS_V0},
    {"target_status", ADSBMessage::TG_STATUS, MOPS_V1},
    {"operational_status", ADSBMessage::OP_STATUS, MOPS_V0},
};

[[maybe_unused]] bool const registered = [] {
    for (auto const& kind : kKinds) {
        for (auto const version : {MOPS_V0, MOPS_V1, MOPS_V2}) {
            if (version < kind.firstVersion) continue;
            auto const name = std::string("adsb/") + kind.name + "/V" + std::to_string(version);
            benchmark::RegisterBenchmark(name.c_str(), decodePayload, kind.type, version);
        }
    }
    return true;
}();

} // namespace

} // namespace quorvel::modes::bench
