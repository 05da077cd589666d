// SPDX-License-Identifier: MIT
// Repair of one and two damaged bits against the search that tries them all, for short and long replies and
// any wanted parity.
//
// Input: length and kind of the wanted parity, that parity or the places to damage, frame.
#include <modes/df_message.h>

#include "harness/require.h"
#include "harness/target.h"
#include "reference/repair.h"

namespace quorvel::fuzz {

namespace {

using modes::ModeSMessage;

struct Repair {
    std::string frame;
    std::uint32_t wanted;
};

// Bytes before the wanted parity is looked for: too short, just right or longer than the reply.
Repair repairFrom(Input& input, std::uint8_t choices, unsigned bits) {
    constexpr unsigned kDamage = 3; // places at most, then the parity is that of the frame without the damage
    if ((choices & 0x80) != 0) {
        auto const wanted = input.number<std::uint32_t>();
        return {input.rest(), wanted};
    }
    std::uint8_t places[kDamage];
    for (auto& place : places) place = input.byte();
    auto frame = input.rest();
    if (8 * frame.size() < bits) return {frame, 0};
    auto const wanted = modes::reference::parityOfFrame(frame.substr(0, bits / 8));
    for (unsigned i = 0; i < (choices >> 1) % (kDamage + 1); ++i) {
        frame = modes::test::withBitsInverted(frame, {places[i] % bits});
    }
    return {frame, wanted};
}

void checkOneBit(ModeSMessage const& reply, Repair const& repair) {
    constexpr unsigned char kUntouched = 200;
    auto frame = repair.frame;
    unsigned char place = kUntouched;
    bool const found = reply.fixError1Bit(frame, place, repair.wanted);
    auto const size = reply.size();
    auto const expected = repair.frame.size() < size
                              ? std::nullopt
                              : modes::reference::searchBit(repair.frame.substr(0, size), repair.wanted);
    require(found == expected.has_value(), "one damaged bit is found when the search finds it");
    require(place == expected.value_or(kUntouched), "the first bit that the search finds");
    auto const repaired = expected ? modes::test::withBitsInverted(repair.frame, {*expected}) : repair.frame;
    require(frame == repaired, "that bit and no other is inverted");
}

void checkTwoBits(ModeSMessage const& reply, Repair const& repair) {
    constexpr unsigned char kUntouched = 200;
    auto frame = repair.frame;
    unsigned char first = kUntouched;
    unsigned char second = kUntouched;
    bool const found = reply.fixError2Bits(frame, first, second, repair.wanted);
    auto const size = reply.size();
    auto const expected = repair.frame.size() < size
                              ? std::nullopt
                              : modes::reference::searchPair(repair.frame.substr(0, size), repair.wanted);
    require(found == expected.has_value(), "two damaged bits are found when the search finds them");
    auto const pair = expected.value_or(std::pair<unsigned, unsigned>(kUntouched, kUntouched));
    require(first == pair.first && second == pair.second, "the first pair that the search finds");
    auto const repaired =
        expected ? modes::test::withBitsInverted(repair.frame, {pair.first, pair.second}) : repair.frame;
    require(frame == repaired, "those bits and no others are inverted");
}

} // namespace

void runTarget(Input input) {
    static modes::DF4Message const shortReply;
    static modes::DF17Message const longReply;
    auto const choices = input.byte();
    ModeSMessage const& reply = (choices & 1) != 0 ? static_cast<ModeSMessage const&>(longReply) : shortReply;
    auto const repair = repairFrom(input, choices, reply.bits());
    checkOneBit(reply, repair);
    checkTwoBits(reply, repair);
}

} // namespace quorvel::fuzz
