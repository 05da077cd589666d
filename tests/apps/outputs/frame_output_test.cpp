// SPDX-License-Identifier: MIT
#include "outputs/frame_output.h"

#include "pictures.h"

#include <modes/df_message.h>

#include <gtest/gtest.h>

using namespace quorvel;
using namespace quorvel::host::test;
using host::Encoding;
using host::FrameOutput;
using modes::ModeSMessage;

namespace {

constexpr char kSquitter[] = "8D4840D6202CC371C32CE0576098";

void hear(FrameOutput& output, ModeSMessage::Confidence confidence) {
    auto const frame = frameOf(kSquitter);
    modes::DF17Message message;
    message.decode(frame.record->data());
    message.setConfidence(confidence);
    output.heard({frame, &message, nullptr});
}

} // namespace

TEST(FrameOutput, PassesFramesThatAreTrustedEnough) {
    Written written;
    FrameOutput output(sinkTo(written), Encoding::Avr, ModeSMessage::MEDIUM);
    EXPECT_EQ(output.wants(), host::Output::Wants::EachFrame);
    hear(output, ModeSMessage::LOW);
    EXPECT_EQ(written.items.size(), 0U);
    hear(output, ModeSMessage::MEDIUM);
    hear(output, ModeSMessage::HIGH);
    EXPECT_EQ(written.items, std::vector<std::string>(2, std::string("*") + kSquitter + ";\n"));
}

TEST(FrameOutput, LeavesOutWhatCouldNotBeDecoded) {
    Written written;
    FrameOutput output(sinkTo(written), Encoding::Hex, ModeSMessage::LOW);
    output.heard({frameOf(kSquitter), nullptr, nullptr});
    EXPECT_EQ(written.items.size(), 0U);
}

TEST(FrameOutput, PassesEverythingWhereNoConfidenceIsAskedFor) {
    Written written;
    FrameOutput output(sinkTo(written), Encoding::Hex, ModeSMessage::NONE);
    output.heard({frameOf("7700"), nullptr, nullptr});
    output.heard({frameOf(kSquitter), nullptr, nullptr});
    hear(output, ModeSMessage::NONE);
    EXPECT_EQ(written.text(), std::string("7700\n") + kSquitter + "\n" + kSquitter + "\n");
}

TEST(FrameOutput, HandsOnTheBytesReceivedNotTheRepairedOnes) {
    Written written;
    FrameOutput output(sinkTo(written), Encoding::Hex, ModeSMessage::HIGH);
    auto const damaged = frameOf("8D4840D6202CC371C32CE0576099");
    modes::DF17Message message;
    message.decode(modes::test::fromHex(kSquitter));
    message.setConfidence(ModeSMessage::HIGH);
    output.heard({damaged, &message, nullptr});
    EXPECT_EQ(written.text(), "8D4840D6202CC371C32CE0576099\n");
}

TEST(FrameOutput, WritesNothingForAFrameThatTheEncodingCannotHold) {
    Written written;
    FrameOutput output(sinkTo(written), Encoding::Raw, ModeSMessage::NONE);
    output.heard({frameOf("7700"), nullptr, nullptr});
    EXPECT_EQ(written.items.size(), 0U);
}

TEST(FrameOutput, IsHandedOnWithEachPicture) {
    Written written;
    FrameOutput output(sinkTo(written), Encoding::Beast, ModeSMessage::HIGH);
    output.flush();
    output.finish({});
    EXPECT_EQ(written.flushes, 2);
}
