// SPDX-License-Identifier: MIT
#include "outputs/frame_output.h"

#include "pictures.h"

#include <gtest/gtest.h>

using namespace quorvel;
using namespace quorvel::outputs::test;
using airspace::Encoding;
using modes::ModeSMessage;
using outputs::FrameOutput;

namespace {

constexpr char kSquitter[] = "8D4840D6202CC371C32CE0576098";

void hear(FrameOutput& output, ModeSMessage::Confidence confidence) {
    airspace::Reply reply;
    reply.isDecoded = true;
    reply.confidence = confidence;
    output.heard({frameOf(kSquitter), reply, nullptr});
}

} // namespace

TEST(FrameOutput, PassesFramesThatAreTrustedEnough) {
    Written written;
    FrameOutput output(sinkTo(written), airspace::Encoding::Avr, ModeSMessage::MEDIUM);
    EXPECT_EQ(output.wants(), outputs::Output::Wants::EachFrame);
    hear(output, ModeSMessage::LOW);
    EXPECT_EQ(written.items.size(), 0U);
    hear(output, ModeSMessage::MEDIUM);
    hear(output, ModeSMessage::HIGH);
    EXPECT_EQ(written.items, std::vector<std::string>(2, std::string("*") + kSquitter + ";\n"));
}

TEST(FrameOutput, LeavesOutWhatCouldNotBeDecoded) {
    Written written;
    FrameOutput output(sinkTo(written), airspace::Encoding::Hex, ModeSMessage::LOW);
    output.heard({frameOf(kSquitter), {}, nullptr});
    EXPECT_EQ(written.items.size(), 0U);
}

TEST(FrameOutput, PassesEverythingWhereNoConfidenceIsAskedFor) {
    Written written;
    FrameOutput output(sinkTo(written), airspace::Encoding::Hex, ModeSMessage::NONE);
    output.heard({frameOf("7700"), {}, nullptr});
    output.heard({frameOf(kSquitter), {}, nullptr});
    hear(output, ModeSMessage::NONE);
    EXPECT_EQ(written.text(), std::string("7700\n") + kSquitter + "\n" + kSquitter + "\n");
}

TEST(FrameOutput, HandsOnTheBytesReceivedNotTheRepairedOnes) {
    Written written;
    FrameOutput output(sinkTo(written), airspace::Encoding::Hex, ModeSMessage::HIGH);
    auto const damaged = frameOf("8D4840D6202CC371C32CE0576099");
    airspace::Reply reply;
    reply.isDecoded = true;
    reply.repairs = 1;
    reply.confidence = ModeSMessage::HIGH;
    output.heard({damaged, reply, nullptr});
    EXPECT_EQ(written.text(), "8D4840D6202CC371C32CE0576099\n");
}

TEST(FrameOutput, WritesNothingForAFrameThatTheEncodingCannotHold) {
    Written written;
    FrameOutput output(sinkTo(written), airspace::Encoding::Raw, ModeSMessage::NONE);
    output.heard({frameOf("7700"), {}, nullptr});
    EXPECT_EQ(written.items.size(), 0U);
}

TEST(FrameOutput, IsHandedOnWithEachPicture) {
    Written written;
    FrameOutput output(sinkTo(written), airspace::Encoding::Beast, ModeSMessage::HIGH);
    output.flush();
    output.finish({});
    EXPECT_EQ(written.flushes, 2);
}
