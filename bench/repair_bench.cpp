// SPDX-License-Identifier: MIT
// Repair of damaged frames: the lookup alone, for the frame as it came and the parity it should have, and
// within the decoding of an extended squitter.
#include "support/bench_frames.h"
#include "support/measure.h"

#include <string>
#include <vector>

namespace quorvel::modes::bench {

namespace {

constexpr std::size_t kBeyondRepair = 3; // and more

std::string withDamage(ModeSMessage const& message, std::string const& frame, std::size_t bits, Random& random) {
    return bits < kBeyondRepair ? damaged(frame, bits, random) : damagedBeyondRepair(message, frame, random);
}

struct Case {
    std::string frame;
    unsigned parity;
};

template <class Reply> std::vector<Case> cases(DFMessage::DownlinkFormat format, std::size_t bits) {
    std::vector<Case> result;
    Random random;
    Reply const message;
    for (auto const& frame : intactFrames(format))
        result.push_back({withDamage(message, frame->data(), bits, random), message.calculateParity(frame->data())});
    return result;
}

bool fixOne(ModeSMessage const& message, std::string& frame, unsigned parity) {
    unsigned char position = 0;
    return message.fixError1Bit(frame, position, parity);
}

bool fixTwo(ModeSMessage const& message, std::string& frame, unsigned parity) {
    unsigned char first = 0;
    unsigned char second = 0;
    return message.fixError2Bits(frame, first, second, parity);
}

using Fix = bool (*)(ModeSMessage const&, std::string&, unsigned);

template <class Reply>
void repair(benchmark::State& state, DFMessage::DownlinkFormat format, Fix fix, std::size_t bits) {
    Reply const message;
    std::string frame;
    bool const expected = bits < kBeyondRepair;
    bool asExpected = true;
    takeTurns(state, cases<Reply>(format, bits), [&](Case const& damage) {
        frame = damage.frame;
        asExpected &= fix(message, frame, damage.parity) == expected;
    });
    if (!asExpected) state.SkipWithError("repair is not what the damage calls for");
}
constexpr auto repairShort = repair<DF11Message>;
constexpr auto repairLong = repair<DF17Message>;
BENCHMARK_CAPTURE(repairShort, one_bit, DFMessage::DF11, fixOne, 1)->Name("repair/fixError1Bit/one_bit/56");
BENCHMARK_CAPTURE(repairLong, one_bit, DFMessage::DF17, fixOne, 1)->Name("repair/fixError1Bit/one_bit/112");
BENCHMARK_CAPTURE(repairShort, none, DFMessage::DF11, fixOne, 3)->Name("repair/fixError1Bit/unrepairable/56");
BENCHMARK_CAPTURE(repairLong, none, DFMessage::DF17, fixOne, 3)->Name("repair/fixError1Bit/unrepairable/112");
BENCHMARK_CAPTURE(repairShort, two_bits, DFMessage::DF11, fixTwo, 2)->Name("repair/fixError2Bits/two_bits/56");
BENCHMARK_CAPTURE(repairLong, two_bits, DFMessage::DF17, fixTwo, 2)->Name("repair/fixError2Bits/two_bits/112");
BENCHMARK_CAPTURE(repairShort, none, DFMessage::DF11, fixTwo, 3)->Name("repair/fixError2Bits/unrepairable/56");
BENCHMARK_CAPTURE(repairLong, none, DFMessage::DF17, fixTwo, 3)->Name("repair/fixError2Bits/unrepairable/112");

void decodeDamaged(benchmark::State& state, std::size_t bits) {
    Records frames;
    for (auto const& damage : cases<DF17Message>(DFMessage::DF17, bits)) frames.push_back(record(damage.frame));
    auto decoder = decoderInService();
    bool const expected = bits < kBeyondRepair;
    bool asExpected = true;
    takeTurns(state, frames, [&](auto const& frame) {
        asExpected &= (decoder.decode(ModeSMessage::DOWNLINK, frame) != nullptr) == expected;
    });
    if (!asExpected) state.SkipWithError("repair is not what the damage calls for");
}
BENCHMARK_CAPTURE(decodeDamaged, intact, 0)->Name("repair/decode/intact");
BENCHMARK_CAPTURE(decodeDamaged, one_bit, 1)->Name("repair/decode/one_bit");
BENCHMARK_CAPTURE(decodeDamaged, two_bits, 2)->Name("repair/decode/two_bits");
BENCHMARK_CAPTURE(decodeDamaged, unrepairable, 3)->Name("repair/decode/unrepairable");

} // namespace

} // namespace quorvel::modes::bench
