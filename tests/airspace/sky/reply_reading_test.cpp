// SPDX-License-Identifier: MIT
#include "airspace/sky/reply_reading.h"

#include <modes/df_message.h>
#include <modes/modes_decoder.h>

#include "support/bytes.h"
#include "support/captured_log.h"
#include "support/frames.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

using namespace quorvel::airspace;
namespace modes = quorvel::modes;
using modes::test::CapturedLog;

namespace {

constexpr std::uint32_t kAddress = 0x4840D6;
constexpr unsigned kIdentificationCode = 4;

// A frame of a format, with the three bits after it and the address as extended squitters have it; with an
// identification as its payload if it is long, and intact.
std::string frameOf(unsigned format, unsigned use) {
    auto const head = modes::test::capability(use) | kAddress;
    if (format < 16) return modes::test::shortFrame(format, head, 0);
    return modes::test::longFrame(format, head, modes::test::payload(kIdentificationCode), 0);
}

Reply undecoded(std::string const& bytes) { return readReply(Frame::of(bytes), nullptr); }

Reply decoded(std::string const& bytes) {
    modes::ModeSDecoder decoder;
    auto const message = decoder.decode(modes::ModeSMessage::DOWNLINK, bytes);
    EXPECT_TRUE(message);
    return readReply(Frame::of(bytes), message.get());
}

} // namespace

TEST(ReplyReading, KnowsTheFormatOfEveryFrameWhetherDecodedOrNot) {
    for (unsigned code = 0; code < 32; ++code) {
        auto const reply = undecoded(frameOf(code, 0));
        EXPECT_EQ(reply.format, std::min(code, 24U)) << code;
        EXPECT_FALSE(reply.isDecoded);
        EXPECT_EQ(reply.address, 0U);
        EXPECT_FALSE(reply.typeCode);
    }
}

TEST(ReplyReading, KnowsWhatEachFormatLaysOverItsParity) {
    struct Case {
        unsigned format;
        Overlay overlay;
    };
    Case const cases[] = {{0, Overlay::Address}, {1, Overlay::Unknown}, {4, Overlay::Address}, {5, Overlay::Address},
        {10, Overlay::Unknown}, {11, Overlay::Interrogator}, {12, Overlay::Unknown}, {16, Overlay::Address},
        {17, Overlay::Nothing}, {18, Overlay::Nothing}, {20, Overlay::Address}, {21, Overlay::Address},
        {22, Overlay::Unknown}, {24, Overlay::Address}};
    for (auto const& [format, overlay] : cases) EXPECT_EQ(undecoded(frameOf(format, 0)).overlay, overlay) << format;
}

TEST(ReplyReading, KnowsOfMilitarySquittersOnlyThoseThatAreAdsB) {
    for (unsigned use = 0; use < 8; ++use) {
        EXPECT_EQ(undecoded(frameOf(19, use)).overlay, use == 0 ? Overlay::Nothing : Overlay::Unknown) << use;
    }
}

TEST(ReplyReading, ReadsTypeCodesWhereThePayloadIsAdsB) {
    CapturedLog log;
    for (unsigned format = 17; format <= 19; ++format) {
        for (unsigned use = 0; use < 8; ++use) {
            bool const isManagement = use == 4 || use == 7; // of ground stations
            bool const isAdsb = format == 17 || (format == 18 && use != 3 && !isManagement);
            auto const reply = decoded(frameOf(format, use));
            EXPECT_TRUE(reply.isDecoded);
            EXPECT_EQ(reply.typeCode.value_or(0), isAdsb ? kIdentificationCode : 0U) << format << ", " << use;
        }
    }
}

TEST(ReplyReading, ReadsNoTypeCodeOfRepliesThatAreNoSquitters) {
    CapturedLog log;
    for (unsigned const format : {0U, 4U, 5U, 11U, 16U, 20U, 21U})
        EXPECT_FALSE(decoded(frameOf(format, 0)).typeCode) << format;
}

TEST(ReplyReading, MakesNothingOfASquitterThatIsTooShort) {
    auto const reply = undecoded(frameOf(19, 0).substr(0, kShortFrameBytes));
    EXPECT_EQ(reply.format, 19);
    EXPECT_EQ(reply.overlay, Overlay::Unknown);
}

TEST(ReplyReading, TellsBitsThatDifferFromThoseReceived) {
    CapturedLog log;
    auto const intact = frameOf(17, 5);
    modes::ModeSDecoder decoder;
    auto const message = decoder.decode(modes::ModeSMessage::DOWNLINK, intact);
    ASSERT_TRUE(message);
    auto const repaired = [&](std::string const& received) { return readReply(Frame::of(received), message.get()); };
    EXPECT_EQ(repaired(intact).repairs, 0);
    auto const two = repaired(modes::test::withBitsInverted(intact, {0, 111}));
    EXPECT_EQ(two.repairs, 2);
    EXPECT_EQ(two.repairedBits, (std::array<std::uint8_t, 2>{1, 112}));
}

TEST(CategorySet, IsNumberedDownwards) {
    EXPECT_EQ(categorySetOf(4), 'A');
    EXPECT_EQ(categorySetOf(3), 'B');
    EXPECT_EQ(categorySetOf(2), 'C');
    EXPECT_EQ(categorySetOf(1), 'D');
}
