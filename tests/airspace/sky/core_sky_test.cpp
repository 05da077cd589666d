// SPDX-License-Identifier: MIT
#include <airspace/core_sky.h>

#include <modes/df_message.h>

#include "support/bytes.h"
#include "support/captured_log.h"
#include "support/frames.h"

#include <gmock/gmock.h>

#include <vector>

using namespace quorvel::airspace;
namespace modes = quorvel::modes;
using modes::ModeSMessage;
using modes::test::CapturedLog;
using modes::test::fromHex;

namespace {

constexpr TimeMs kNow = 1'000'000;
auto const* const kIdentification = "8D4840D6202CC371C32CE0576098"; // KLM1023
auto const* const kPosition = "8D40621D58C382D690C8AC2863A7";
auto const* const kOddPosition = "8D40621D58C386435CC412692AD6"; // the other frame of the pair
constexpr std::uint32_t kKlm = 0x4840D6;
constexpr std::uint32_t kPositioned = 0x40621D;

Frame frameOf(std::string const& bytes, TimeMs time = kNow) {
    auto frame = Frame::of(bytes, time);
    frame.signal = 0x42;
    return frame;
}

Frame heard(std::string const& hex, TimeMs time = kNow) { return frameOf(fromHex(hex), time); }

// An intact extended squitter of an address, its payload all zeros.
std::string squitter(std::uint32_t address) { return modes::test::squitter(address, std::string(7, '\0')); }

std::string damagedIdentification() {
    auto damaged = fromHex(kIdentification);
    damaged[6] = static_cast<char>(damaged[6] ^ 0x10);
    return damaged;
}

} // namespace

TEST(CoreSky, CountsWhatBecomesOfFrames) {
    CapturedLog log;
    CoreSky sky;
    for (auto const* hex : {kIdentification, "ABCD", "0000000000000000000000000000", "C8000000000000"})
        sky.take(heard(hex));
    auto const& counts = sky.counts();
    EXPECT_EQ(counts.undecoded, 1U);
    EXPECT_EQ(counts.byFormat[17], 1U);
    EXPECT_EQ(counts.byFormat[0], 1U);
    EXPECT_EQ(counts.byFormat[25], 1U);
    EXPECT_EQ(counts.byConfidence[ModeSMessage::HIGH], 1U);
    EXPECT_EQ(counts.tracked, 1U);
    EXPECT_EQ(counts.targetsMade, 1U);
    EXPECT_EQ(sky.size(), 1U);
}

TEST(CoreSky, SaysWhatAFrameMeant) {
    CapturedLog log;
    CoreSky sky;
    auto const reply = sky.take(heard(kIdentification));
    EXPECT_TRUE(reply.isDecoded);
    EXPECT_EQ(reply.format, 17);
    EXPECT_EQ(reply.address, kKlm);
    EXPECT_EQ(reply.confidence, ModeSMessage::HIGH);
    EXPECT_EQ(reply.overlay, Overlay::Nothing);
    EXPECT_EQ(reply.overlaid, 0U);
    EXPECT_EQ(reply.repairs, 0);
    EXPECT_EQ(reply.typeCode, 4);
    EXPECT_TRUE(reply.isTracked);
    ASSERT_TRUE(sky.message());
    EXPECT_EQ(sky.message()->icaoAddress(), kKlm);
}

TEST(CoreSky, SaysWhichBitsWereRepaired) {
    CapturedLog log;
    CoreSky sky;
    auto const one = sky.take(frameOf(damagedIdentification()));
    EXPECT_EQ(one.repairs, 1);
    EXPECT_EQ(one.repairedBits[0], 6 * 8 + 4);
    auto damaged = damagedIdentification();
    damaged[9] = static_cast<char>(damaged[9] ^ 0x01);
    auto const two = sky.take(frameOf(damaged));
    EXPECT_EQ(two.repairs, 2);
    EXPECT_EQ(two.repairedBits[1], 9 * 8 + 8);
    EXPECT_EQ(two.typeCode, 4);
}

TEST(CoreSky, SaysWhatIsLaidOverTheParity) {
    CapturedLog log;
    CoreSky sky;
    sky.take(heard(kIdentification));
    using namespace modes::test;
    auto const identity = sky.take(frameOf(shortFrame(5, flightStatus(0) | identityCode(04032), kKlm)));
    EXPECT_EQ(identity.overlay, Overlay::Address);
    EXPECT_EQ(identity.overlaid, kKlm);
    auto const allCall = sky.take(frameOf(shortFrame(11, capability(5) | kKlm, 7)));
    EXPECT_EQ(allCall.overlay, Overlay::Interrogator);
    EXPECT_EQ(allCall.overlaid, 7U);
    EXPECT_EQ(sky.take(heard("C8000000000000")).overlay, Overlay::Unknown);
}

TEST(CoreSky, MakesNothingOfModeAcRepliesAndOfNoBytes) {
    CoreSky sky;
    for (auto const& frame : {heard("ABCD"), Frame()}) {
        auto const reply = sky.take(frame);
        EXPECT_FALSE(reply.isDecoded);
        EXPECT_FALSE(reply.format);
        EXPECT_FALSE(reply.isTracked);
        EXPECT_FALSE(sky.message());
    }
    EXPECT_EQ(sky.size(), 0U);
}

TEST(CoreSky, HandsTheSignalLevelOn) {
    CapturedLog log;
    CoreSky sky;
    sky.take(heard(kIdentification));
    EXPECT_EQ(sky.message()->signalAmplitude(), 0x42);
    EXPECT_EQ(sky.find(kKlm, kNow)->signalAmplitude.value, 0x42);
}

TEST(CoreSky, GivesEachItemItsSourceAndTimes) {
    CapturedLog log;
    CoreSky sky;
    sky.take(heard(kIdentification, kNow));
    using namespace modes::test;
    sky.take(frameOf(shortFrame(4, flightStatus(2) | altitudeCode(38000), kKlm), kNow + 1000));
    auto const aircraft = sky.find(kKlm, kNow + 5000);
    ASSERT_TRUE(aircraft);
    EXPECT_EQ(aircraft->callsign.value, "KLM1023 ");
    EXPECT_EQ(aircraft->callsign.source, Source::AdsB);
    EXPECT_EQ(aircraft->callsign.updated, kNow);
    EXPECT_EQ(aircraft->callsign.changed, kNow);
    EXPECT_EQ(aircraft->emitterCategory.value->set, 'A');
    EXPECT_EQ(aircraft->altitudeBaro.value, 38000);
    EXPECT_EQ(aircraft->altitudeBaro.source, Source::ModeS);
    EXPECT_EQ(aircraft->altitudeBaro.updated, kNow + 1000);
    EXPECT_EQ(aircraft->age(aircraft->altitudeBaro.updated), 4000U);
    EXPECT_EQ(aircraft->alertStatus.source, Source::ModeS);
    EXPECT_EQ(aircraft->signalAmplitude.source, Source::AdsB) << "measured of squitters alone";
    EXPECT_FALSE(aircraft->squawk.value);
    EXPECT_EQ(aircraft->squawk.source, Source::None);
    EXPECT_EQ(aircraft->heard, kNow + 1000);
}

TEST(CoreSky, MakesNoAircraftOfRepairedReplies) {
    CapturedLog log;
    for (auto const policy : {RepairedReplies::Keep, RepairedReplies::Known, RepairedReplies::Drop}) {
        SkyOptions options;
        options.repaired = policy;
        CoreSky sky(options);
        EXPECT_EQ(sky.take(frameOf(damagedIdentification())).isTracked, policy == RepairedReplies::Keep);
        EXPECT_TRUE(sky.take(heard(kIdentification)).isTracked);
        EXPECT_EQ(sky.take(frameOf(damagedIdentification())).isTracked, policy != RepairedReplies::Drop)
            << "once the aircraft is known";
        EXPECT_EQ(sky.counts().repaired, 2U);
        EXPECT_EQ(sky.counts().repairedRefused, policy == RepairedReplies::Keep    ? 0U
                                                : policy == RepairedReplies::Known ? 1U
                                                                                   : 2U);
    }
}

TEST(CoreSky, ShowsPositionsThatPassedOnly) {
    CapturedLog log;
    SkyOptions options;
    options.positions.receiver = Place{52.3, 4.8};
    CoreSky near(options);
    near.take(heard(kPosition, kNow));
    near.take(heard(kOddPosition, kNow + 1000));
    auto const shown = near.find(kPositioned, kNow + 3000);
    ASSERT_TRUE(shown && shown->position.value);
    EXPECT_NEAR(shown->position.value->latitude, 52.26, 0.02);
    EXPECT_EQ(shown->position.updated, kNow + 1000);
    EXPECT_EQ(shown->age(shown->position.updated), 2000U);
    EXPECT_EQ(near.counts().positions, 1U);
    EXPECT_TRUE(near.report(kPositioned)->positionValid());

    options.positions.receiver = Place{-40, 100};
    CoreSky far(options);
    far.take(heard(kPosition, kNow));
    far.take(heard(kOddPosition, kNow + 1000));
    EXPECT_TRUE(far.tracker().findConstTarget(kPositioned)->positionValid());
    auto const hidden = far.find(kPositioned, kNow);
    EXPECT_FALSE(hidden->position.value);
    EXPECT_EQ(hidden->position.updated, 0U);
    EXPECT_EQ(hidden->positionsRefused, 1U);
    EXPECT_EQ(far.counts().positionsOutOfRange, 1U);
    EXPECT_FALSE(far.report(kPositioned)->positionValid());
}

TEST(CoreSky, SaysWithWhichReplyAPositionIsShown) {
    CapturedLog log;
    CoreSky sky;
    EXPECT_FALSE(sky.take(heard(kPosition, kNow)).isPositionShown) << "half a pair";
    EXPECT_TRUE(sky.take(heard(kOddPosition, kNow + 1000)).isPositionShown);
    auto const velocity = modes::test::squitter(kPositioned, modes::test::airborneVelocity({}));
    EXPECT_FALSE(sky.take(frameOf(velocity, kNow + 1000)).isPositionShown);

    SkyOptions options;
    options.positions.receiver = Place{-40, 100};
    CoreSky far(options);
    std::vector<bool> shown;
    for (unsigned i = 0; i < 6; ++i)
        shown.push_back(far.take(heard(i % 2 == 0 ? kPosition : kOddPosition, kNow + 1000 * i)).isPositionShown);
    EXPECT_THAT(shown, testing::ElementsAre(false, false, false, false, true, true)) << "three refusals, then believed";
}

TEST(CoreSky, CountsTheMessagesOfAnAircraftThatCouldBeRead) {
    CapturedLog log;
    CoreSky sky;
    sky.take(heard(kIdentification));
    sky.take(heard(kIdentification));
    EXPECT_EQ(sky.find(kKlm, kNow)->messages, 2U);
    EXPECT_TRUE(sky.take(frameOf(squitter(77))).isTracked) << "its payload is of no type";
    EXPECT_EQ(sky.find(77, kNow)->messages, 0U);
}

TEST(CoreSky, JudgesAPositionOnceWhateverElseComesAtTheSameTime) {
    CapturedLog log;
    SkyOptions options;
    options.positions.receiver = Place{-40, 100};
    CoreSky far(options);
    far.take(heard(kPosition, kNow));
    far.take(heard(kOddPosition, kNow));
    auto const velocity = modes::test::squitter(kPositioned, modes::test::airborneVelocity({}));
    for (int i = 0; i < 5; ++i) far.take(frameOf(velocity, kNow));
    EXPECT_EQ(far.counts().positionsOutOfRange, 1U);
    EXPECT_EQ(far.counts().positionsBelieved, 0U) << "one refusal is not three";
    EXPECT_FALSE(far.find(kPositioned, kNow)->position.value);
}

TEST(CoreSky, JudgesAPositionOnceWhenHalvesOfPairsBearOneTime) {
    CapturedLog log;
    SkyOptions options;
    options.positions.receiver = Place{-40, 100};
    CoreSky far(options);
    for (int i = 0; i < 5; ++i) {
        far.take(heard(kPosition, kNow));
        far.take(heard(kOddPosition, kNow));
    }
    EXPECT_EQ(far.counts().positionsBelieved, 0U);
    EXPECT_LE(far.counts().positionsOutOfRange, 2U) << "one for each half that completes the pair";
}

TEST(CoreSky, KeepsTheSourceOfAnItemWhenOthersBearItsTime) {
    CapturedLog log;
    CoreSky sky;
    sky.take(heard(kIdentification, kNow));
    using namespace modes::test;
    sky.take(frameOf(squitter(kKlm, airbornePosition({93'000, 51'372, false, 0xC3})), kNow));
    sky.take(frameOf(shortFrame(5, flightStatus(0) | identityCode(04032), kKlm), kNow));
    auto const aircraft = sky.find(kKlm, kNow);
    EXPECT_EQ(aircraft->altitudeBaro.source, Source::AdsB);
    EXPECT_EQ(aircraft->squawk.source, Source::ModeS);
    EXPECT_EQ(aircraft->groundStatus.source, Source::ModeS) << "the identity reply brought it again";
}

TEST(CoreSky, MakesNothingOfAFrameThatClaimsMoreBytesThanThereAre) {
    CoreSky sky;
    auto frame = heard(kIdentification);
    frame.length = 200;
    EXPECT_EQ(frame.view().size(), kLongFrameBytes);
    EXPECT_FALSE(sky.take(frame).isDecoded);
    EXPECT_EQ(sky.counts().undecoded, 1U);
}

TEST(CoreSky, DropsAircraftThatHaveFallenSilent) {
    CapturedLog log;
    CoreSky sky;
    sky.setTimeout(60'000);
    sky.take(heard(kIdentification, kNow));
    sky.take(heard(kPosition, kNow + 30'000));
    sky.dropSilent(kNow + 59'999);
    EXPECT_EQ(sky.size(), 2U);
    sky.dropSilent(kNow + 60'000);
    EXPECT_EQ(sky.size(), 1U);
    EXPECT_EQ(sky.counts().targetsDropped, 1U);
    EXPECT_EQ(sky.aircraft(kNow).at(0).address, kPositioned);
    EXPECT_FALSE(sky.find(kKlm, kNow));
    EXPECT_FALSE(sky.report(kKlm));
}

TEST(CoreSky, TellsOfEveryAircraftThatItDrops) {
    CapturedLog log;
    CoreSky sky;
    std::vector<std::uint32_t> dropped;
    sky.onDropped([&](auto const& target) { dropped.push_back(target->icaoAddr()); });
    sky.take(heard(kIdentification));
    sky.take(heard(kPosition));
    sky.dropAll();
    EXPECT_THAT(dropped, testing::ElementsAre(kPositioned, kKlm));
    EXPECT_EQ(sky.size(), 0U);
}

TEST(CoreSky, TellsOfDroppedAircraftWhenTheyAreGone) {
    CapturedLog log;
    CoreSky sky;
    std::vector<std::size_t> left;
    sky.onDropped([&](auto const& target) {
        EXPECT_FALSE(sky.find(target->icaoAddr(), kNow));
        EXPECT_EQ(sky.counts().targetsDropped, 2U);
        left.push_back(sky.size());
    });
    sky.take(heard(kIdentification));
    sky.take(heard(kPosition));
    sky.dropAll();
    EXPECT_THAT(left, testing::ElementsAre(0U, 0U));
}

TEST(CoreSky, MayBeUsedByTheHandlerOfDroppedAircraft) {
    CapturedLog log;
    CoreSky sky;
    sky.setTimeout(60'000);
    int told = 0;
    sky.onDropped([&](auto const& target) {
        if (++told > 2) return;
        sky.take(frameOf(squitter(100 + target->icaoAddr()), kNow)); // takes the number of one of the dropped
        sky.dropSilent(kNow);
    });
    sky.take(frameOf(squitter(1), kNow));
    sky.take(frameOf(squitter(2), kNow));
    sky.dropAll();
    EXPECT_EQ(told, 2);
    EXPECT_EQ(sky.size(), 2U);
    EXPECT_EQ(sky.aircraft(kNow).size(), 2U);
    EXPECT_EQ(sky.counts().targetsMade, 4U);
    sky.dropSilent(kNow + 60'000);
    EXPECT_EQ(told, 4);
    EXPECT_EQ(sky.size(), 0U);
    EXPECT_EQ(sky.counts().targetsDropped, 4U);
}

TEST(CoreSky, MayBeEmptiedByTheHandlerWhileItDropsAircraftOfTheFuture) {
    CapturedLog log;
    CoreSky sky;
    sky.onDropped([&](auto const&) { sky.dropAll(); });
    for (std::uint32_t address = 1; address <= 3; ++address) sky.take(frameOf(squitter(address), kNow + 3'600'000));
    sky.dropSilent(kNow);
    EXPECT_EQ(sky.size(), 0U);
    EXPECT_EQ(sky.counts().targetsDropped, 3U);
}

TEST(CoreSky, LetsTheHandlerOfDroppedAircraftReplaceItself) {
    CapturedLog log;
    CoreSky sky;
    std::vector<std::string> told;
    sky.onDropped([&](auto const&) {
        told.emplace_back("first");
        sky.onDropped([&](auto const&) { told.emplace_back("second"); });
        told.emplace_back("still there");
    });
    sky.take(frameOf(squitter(1)));
    sky.dropAll();
    sky.take(frameOf(squitter(1)));
    sky.dropAll();
    EXPECT_THAT(told, testing::ElementsAre("first", "still there", "second"));
}

TEST(CoreSky, DropsAircraftOfATimeThatWasLeft) {
    CapturedLog log;
    CoreSky sky;
    sky.setTimeout(60'000);
    sky.take(heard(kIdentification, kNow + 86'000'000));
    sky.dropSilent(kNow);
    EXPECT_EQ(sky.size(), 0U);
}

TEST(CoreSky, DropsAircraftThatWereHeardAfterThePresentWhateverTheTimeout) {
    CapturedLog log;
    CoreSky sky;
    auto const before = kNow + 3'600'000;
    sky.take(heard(kIdentification, before));
    sky.take(heard(kPosition, before));
    sky.take(heard(kPosition, kNow)); // whose other items are still those of before
    sky.take(frameOf(squitter(77), kNow));
    sky.take(frameOf(squitter(78), kNow + 1000)); // another source is a second ahead
    sky.dropSilent(kNow);
    EXPECT_EQ(sky.counts().targetsDropped, 2U);
    EXPECT_EQ(sky.size(), 2U);
    sky.take(heard(kPosition, kNow + 2000));
    sky.dropSilent(kNow + 2000);
    EXPECT_EQ(sky.size(), 3U) << "it is back with the times of now";
}

TEST(CoreSky, DropsTheOldestSilentAircraftWhenAllTrackNumbersAreInUse) {
    CapturedLog log(modes::Log::Error);
    CoreSky sky;
    for (std::uint32_t i = 1; i <= 4095; ++i) sky.take(frameOf(squitter(i), kNow + i));
    EXPECT_EQ(sky.size(), 4095U);
    EXPECT_FALSE(sky.take(frameOf(squitter(5000), kNow + 5000)).isTracked) << "none has been silent for long";
    EXPECT_EQ(sky.counts().tableFull, 1U);
    EXPECT_TRUE(sky.take(frameOf(squitter(77), kNow + 5001)).isTracked) << "known ones are updated";
    EXPECT_EQ(sky.counts().tableFull, 1U);

    auto const later = kNow + 60'000;
    EXPECT_TRUE(sky.take(frameOf(squitter(5000), later)).isTracked);
    EXPECT_EQ(sky.counts().tableFull, 1U);
    EXPECT_GT(sky.counts().targetsMadeRoom, 0U);
    EXPECT_LE(sky.counts().targetsMadeRoom, 65U) << "only as many as make room for a while";
    EXPECT_FALSE(sky.find(1, later)) << "the oldest goes first";
    EXPECT_TRUE(sky.find(77, later));
    EXPECT_TRUE(sky.find(4095, later));
    EXPECT_EQ(sky.size(), sky.aircraft(later).size());
}
