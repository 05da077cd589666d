// SPDX-License-Identifier: MIT
#include "host/host_error.h"
#include "host/receiver.h"

#include "support/bytes.h"
#include "support/captured_log.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

using namespace quorvel::host;
namespace modes = quorvel::modes;
using modes::ModeSMessage;
using modes::test::CapturedLog;
using modes::test::fromHex;
using modes::test::TemporaryFolder;

namespace {

constexpr TimeMs kNow = 1'000'000;
auto const* const kIdentification = "8D4840D6202CC371C32CE0576098"; // KLM1023
auto const* const kPosition = "8D40621D58C382D690C8AC2863A7";
auto const* const kOddPosition = "8D40621D58C386435CC412692AD6"; // the other frame of the pair

std::string content(std::string const& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

Frame frameOf(std::string const& bytes, TimeMs time = kNow) {
    Frame frame{std::make_shared<modes::ModeSEncapsulation>(), {}, 0x42};
    frame.record->setData(bytes);
    frame.record->setTimeStamp(time);
    return frame;
}

Frame heard(std::string const& hex, TimeMs time = kNow) { return frameOf(fromHex(hex), time); }

// An intact extended squitter of an address, its payload all zeros.
std::string squitter(unsigned int address) {
    std::string bytes = fromHex("8D0000000000000000000000000000").substr(0, 14);
    for (unsigned i = 0; i < 3; ++i) bytes[1 + i] = static_cast<char>(address >> (16 - 8 * i));
    auto const parity = modes::DF17Message().calculateParity(bytes);
    for (unsigned i = 0; i < 3; ++i) bytes[11 + i] = static_cast<char>(parity >> (16 - 8 * i));
    return bytes;
}

} // namespace

TEST(Receiver, CountsWhatBecomesOfFrames) {
    CapturedLog log;
    Receiver receiver({}, nullptr);
    for (auto const* hex : {kIdentification, "ABCD", "0000000000000000000000000000", "C8000000000000"})
        receiver.take(heard(hex));
    auto const& counters = receiver.counters();
    EXPECT_EQ(counters.undecoded, 1U);
    EXPECT_EQ(counters.byFormat[17], 1U);
    EXPECT_EQ(counters.byFormat[0], 1U);
    EXPECT_EQ(counters.byFormat[25], 1U);
    EXPECT_EQ(counters.byConfidence[ModeSMessage::HIGH], 1U);
    EXPECT_EQ(counters.tracked, 1U);
    EXPECT_EQ(counters.targetsMade, 1U);
    EXPECT_EQ(receiver.targets(), 1U);
}

TEST(Receiver, HandsTheSignalLevelOn) {
    CapturedLog log;
    Receiver receiver({}, nullptr);
    auto const result = receiver.take(heard(kIdentification));
    ASSERT_TRUE(result.message && result.target);
    EXPECT_EQ(result.message->signalAmplitude(), 0x42);
    EXPECT_EQ(result.target->signalAmplitude(), 0x42);
}

TEST(Receiver, MakesNoAircraftOfRepairedReplies) {
    CapturedLog log;
    auto damaged = fromHex(kIdentification);
    damaged[6] = static_cast<char>(damaged[6] ^ 0x10);
    for (auto const policy : {RepairedReplies::Keep, RepairedReplies::Known, RepairedReplies::Drop}) {
        ReceiverOptions options;
        options.repaired = policy;
        Receiver receiver(options, nullptr);
        EXPECT_EQ(static_cast<bool>(receiver.take(frameOf(damaged)).target), policy == RepairedReplies::Keep);
        EXPECT_TRUE(receiver.take(heard(kIdentification)).target);
        EXPECT_EQ(static_cast<bool>(receiver.take(frameOf(damaged)).target), policy != RepairedReplies::Drop)
            << "once the aircraft is known";
        EXPECT_EQ(receiver.counters().repaired, 2U);
        EXPECT_EQ(receiver.counters().repairedRefused, policy == RepairedReplies::Keep    ? 0U
                                                       : policy == RepairedReplies::Known ? 1U
                                                                                          : 2U);
    }
}

TEST(Receiver, ShowsPositionsThatPassedOnly) {
    CapturedLog log;
    ReceiverOptions options;
    options.positions.receiver = Place{52.3, 4.8};
    Receiver near(options, nullptr);
    near.take(heard(kPosition, kNow));
    auto target = near.take(heard(kOddPosition, kNow + 1000)).target;
    auto const shown = near.shown(*target, kNow + 3000);
    EXPECT_TRUE(shown.report->positionValid());
    EXPECT_NEAR(shown.report->latitude(), 52.26, 0.02);
    EXPECT_EQ(shown.report->positionLastUpdate(), kNow + 1000);
    EXPECT_EQ(shown.age(shown.report->positionLastUpdate()), 2000U);
    EXPECT_EQ(near.counters().positions, 1U);

    options.positions.receiver = Place{-40, 100};
    Receiver far(options, nullptr);
    far.take(heard(kPosition, kNow));
    target = far.take(heard(kOddPosition, kNow + 1000)).target;
    EXPECT_TRUE(target->positionValid());
    auto const hidden = far.shown(*target, kNow);
    EXPECT_FALSE(hidden.report->positionValid());
    EXPECT_EQ(hidden.report->positionLastUpdate(), 0U);
    EXPECT_EQ(hidden.positionsRefused, 1U);
    EXPECT_EQ(far.counters().positionsOutOfRange, 1U);
}

TEST(Receiver, DropsTargetsThatHaveFallenSilent) {
    CapturedLog log;
    Receiver receiver({}, nullptr);
    receiver.setTimeout(60'000);
    receiver.take(heard(kIdentification, kNow));
    receiver.take(heard(kPosition, kNow + 30'000));
    receiver.dropSilentTargets(kNow + 59'999);
    EXPECT_EQ(receiver.targets(), 2U);
    receiver.dropSilentTargets(kNow + 60'000);
    EXPECT_EQ(receiver.targets(), 1U);
    EXPECT_EQ(receiver.counters().targetsDropped, 1U);
    EXPECT_EQ(receiver.aircraft(kNow).at(0).report->icaoAddress(), 0x40621DU);
}

TEST(Receiver, DropsTargetsOfATimeThatWasLeft) {
    CapturedLog log;
    Receiver receiver({}, nullptr);
    receiver.setTimeout(60'000);
    receiver.take(heard(kIdentification, kNow + 86'000'000));
    receiver.dropSilentTargets(kNow);
    EXPECT_EQ(receiver.targets(), 0U);
}

TEST(Receiver, DropsTargetsThatWereHeardAfterThePresentWhateverTheTimeout) {
    CapturedLog log;
    Receiver receiver({}, nullptr);
    auto const before = kNow + 3'600'000;
    receiver.take(heard(kIdentification, before));
    receiver.take(heard(kPosition, before));
    receiver.take(heard(kPosition, kNow)); // whose other items are still those of before
    receiver.take(frameOf(squitter(77), kNow));
    receiver.take(frameOf(squitter(78), kNow + 1000)); // another source is a second ahead
    receiver.dropSilentTargets(kNow);
    EXPECT_EQ(receiver.counters().targetsDropped, 2U);
    EXPECT_EQ(receiver.targets(), 2U);
    receiver.take(heard(kPosition, kNow + 2000));
    receiver.dropSilentTargets(kNow + 2000);
    EXPECT_EQ(receiver.targets(), 3U) << "it is back with the times of now";
}

TEST(Receiver, DropsTheOldestSilentTargetsWhenAllTrackNumbersAreInUse) {
    CapturedLog log(modes::Log::Error);
    Receiver receiver({}, nullptr);
    for (unsigned int i = 1; i <= 4095; ++i) receiver.take(frameOf(squitter(i), kNow + i));
    EXPECT_EQ(receiver.targets(), 4095U);
    EXPECT_FALSE(receiver.take(frameOf(squitter(5000), kNow + 5000)).target)
        << "none has been silent for long";
    EXPECT_EQ(receiver.counters().tableFull, 1U);
    EXPECT_TRUE(receiver.take(frameOf(squitter(77), kNow + 5001)).target) << "known ones are updated";
    EXPECT_EQ(receiver.counters().tableFull, 1U);

    auto const later = kNow + 60'000;
    EXPECT_TRUE(receiver.take(frameOf(squitter(5000), later)).target);
    EXPECT_EQ(receiver.counters().tableFull, 1U);
    EXPECT_GT(receiver.counters().targetsMadeRoom, 0U);
    EXPECT_LE(receiver.counters().targetsMadeRoom, 65U) << "only as many as make room for a while";
    EXPECT_EQ(receiver.tracker().findConstTarget(1), nullptr) << "the oldest goes first";
    EXPECT_NE(receiver.tracker().findConstTarget(77), nullptr);
    EXPECT_NE(receiver.tracker().findConstTarget(4095), nullptr);
    EXPECT_EQ(receiver.targets(), receiver.tracker().allTargets().size());
}

TEST(AircraftFile, IsMadeWhenItIsNotThereYet) {
    CapturedLog log;
    TemporaryFolder folder;
    AircraftFile database(folder.path("db.csv"));
    Receiver receiver({}, &database);
    receiver.dropAllTargets();
    database.save();
    EXPECT_EQ(content(folder.path("db.csv")), "icao_addr,mops_version,airline\n");
}

TEST(AircraftFile, TeachesTheTracker) {
    CapturedLog log;
    TemporaryFolder folder;
    AircraftFile database(folder.write("db.csv", "icao_addr,mops_version,airline\n4840D6,2,KLM\n"));
    Receiver receiver({}, &database);
    EXPECT_EQ(receiver.take(heard(kIdentification)).target->mopsVersion(), modes::MOPS_V2);
    receiver.dropAllTargets();
    database.save();
    EXPECT_EQ(content(folder.path("db.csv")), "icao_addr,mops_version,airline\n4840D6,2,KLM\n");
}

TEST(AircraftFile, LearnsFromAllReceivers) {
    CapturedLog log;
    TemporaryFolder folder;
    AircraftFile database(folder.path("db.csv"));
    Receiver one({}, &database);
    Receiver other({}, &database);
    for (int i = 0; i < 21; ++i) one.take(heard(kIdentification)); // so many confirm version 0
    for (int i = 0; i < 21; ++i) other.take(heard(kPosition));
    one.dropAllTargets();
    other.dropAllTargets();
    database.save();
    EXPECT_EQ(content(folder.path("db.csv")), "icao_addr,mops_version,airline\n40621D,0,\n4840D6,0,KLM\n");
}

TEST(AircraftFile, SaysSoWhenItCannotBeReadOrWritten) {
    CapturedLog log;
    TemporaryFolder folder;
    AircraftFile unwritable(folder.path("missing/db.csv"));
    EXPECT_THROW(unwritable.save(), HostError);
    EXPECT_THROW(AircraftFile(folder.path("")), HostError) << "a folder is no file";
}
