// SPDX-License-Identifier: MIT
#include <airspace/sky.h>

#include "airspace/readings/payload.h"
#include "airspace/sky/recordings.h"
#include "reference/cpr_encoder.h"
#include "support/bytes.h"
#include "support/frames.h"

#include <gmock/gmock.h>

#include <string>
#include <variant>
#include <vector>

using namespace quorvel::airspace;
using namespace quorvel::airspace::test;
using namespace quorvel::modes::test;
using quorvel::modes::ModeSMessage;

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
std::string emptySquitter(std::uint32_t address) { return squitter(address, std::string(7, '\0')); }

std::string damagedIdentification() { return withBitsInverted(fromHex(kIdentification), {51}); }

SkyOptions heardFrom(Place const& receiver) {
    SkyOptions options;
    options.positions.receiver = receiver;
    return options;
}

} // namespace

TEST(Sky, CountsWhatBecomesOfFrames) {
    Sky sky;
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

TEST(Sky, SaysWhatAFrameMeant) {
    Sky sky;
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
    auto const* squitter = std::get_if<ExtendedSquitter>(&reply.message);
    ASSERT_TRUE(squitter);
    EXPECT_TRUE(std::holds_alternative<Identification>(squitter->content));
}

TEST(Sky, SaysWhichBitsWereRepairedAndWhatTheRepairedFrameMeans) {
    Sky sky;
    auto const reply = sky.take(frameOf(damagedIdentification()));
    EXPECT_EQ(reply.repairs, 1);
    EXPECT_EQ(reply.repairedBits[0], 52);
    EXPECT_EQ(reply.typeCode, 4);
    EXPECT_TRUE(std::get<ExtendedSquitter>(reply.message).isIntact());
}

TEST(Sky, TakesAllFramesAsOneByOneHoweverManyAircraftThereAre) {
    constexpr std::uint32_t aircraft = 3'000;
    Frames frames;
    for (auto const time : {kNow, kNow + 1000}) {
        for (std::uint32_t address = 1; address <= aircraft; ++address) {
            frames.push_back(frameOf(emptySquitter(address), time));
            frames.push_back(frameOf(shortFrame(4, altitudeCode(38000), address), time));
        }
    }
    frames.push_back(Frame::of("AB", kNow)); // no address can be expected of it
    frames.insert(frames.end(), {Frame(), heard(kPosition), heard(kOddPosition)});
    Sky oneByOne;
    std::vector<bool> tracked;
    for (auto const& frame : frames) tracked.push_back(oneByOne.take(frame).isTracked);
    Sky all;
    std::vector<bool> trackedOfAll;
    all.takeAll(frames, [&](Frame const& frame, Reply const& reply) {
        EXPECT_EQ(&frame, &frames[trackedOfAll.size()]);
        trackedOfAll.push_back(reply.isTracked);
    });
    EXPECT_EQ(trackedOfAll, tracked);
    EXPECT_EQ(all.size(), aircraft + 1);
    EXPECT_EQ(all.counts().tracked, oneByOne.counts().tracked);
    EXPECT_EQ(all.find(aircraft, kNow + 1000)->messages, oneByOne.find(aircraft, kNow + 1000)->messages);
    all.takeAll(frames);
    EXPECT_EQ(all.counts().tracked, 2 * oneByOne.counts().tracked);
}

TEST(Sky, MakesNothingOfModeAcRepliesAndOfNoBytes) {
    Sky sky;
    for (auto const& frame : {heard("ABCD"), Frame()}) {
        auto const reply = sky.take(frame);
        EXPECT_FALSE(reply.isDecoded);
        EXPECT_FALSE(reply.format);
        EXPECT_FALSE(reply.isTracked);
    }
    EXPECT_EQ(sky.size(), 0U);
    EXPECT_EQ(sky.counts().undecoded, 0U);
}

TEST(Sky, MakesNothingOfAFrameThatClaimsMoreBytesThanThereAre) {
    Sky sky;
    auto frame = heard(kIdentification);
    frame.length = 200;
    EXPECT_EQ(frame.view().size(), kLongFrameBytes);
    EXPECT_TRUE(sky.take(frame).isDecoded) << "it is read as far as there are bytes";
}

TEST(Sky, GivesEachItemItsSourceAndTimes) {
    Sky sky;
    sky.take(heard(kIdentification));
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
    EXPECT_EQ(aircraft->signalAmplitude.value, 0x42);
    EXPECT_EQ(aircraft->signalAmplitude.source, Source::ModeS) << "of the last reply";
    EXPECT_FALSE(aircraft->squawk.value);
    EXPECT_EQ(aircraft->squawk.source, Source::None);
    EXPECT_EQ(aircraft->heard, kNow + 1000);
    EXPECT_EQ(aircraft->messages, 2U);
}

TEST(Sky, TellsWhatTheAddressTells) {
    Sky sky;
    sky.take(heard(kIdentification));
    sky.take(frameOf(emptySquitter(0xA00001)));
    sky.take(frameOf(emptySquitter(0xADF7C8)));
    auto const dutch = sky.find(kKlm, kNow);
    EXPECT_EQ(dutch->stateCode, "NL");
    EXPECT_FALSE(dutch->registration.value);
    auto const american = sky.find(0xA00001, kNow);
    EXPECT_EQ(american->stateCode, "US");
    EXPECT_EQ(american->registration.value, "N1");
    EXPECT_EQ(american->registration.source, Source::Derived);
    EXPECT_FALSE(american->isMilitaryAddress);
    EXPECT_TRUE(sky.find(0xADF7C8, kNow)->isMilitaryAddress);
}

TEST(Sky, DerivesNothingOfAnAircraftThatHasBeenSilentForWeeks) {
    Sky sky;
    auto const sent = quorvel::modes::reference::encoded(50, 8, 0);
    auto const bits = PositionBits{sent.latitude, sent.longitude, false, 0xC3, false, 11};
    sky.take(frameOf(squitter(kKlm, airbornePosition(bits)), kNow));
    auto const velocity = Payload::ofType(19).with(6, 8, 1).with(15, 24, 101).with(26, 35, 1).with(50, 56, 5).bytes();
    sky.take(frameOf(squitter(kKlm, velocity), kNow));
    EXPECT_TRUE(sky.find(kKlm, kNow + 1'000)->altitudeGnss.value) << "of the altitude and the difference";
    for (TimeMs const later : {TimeMs{3'600'000}, TimeMs{1} << 32, (TimeMs{1} << 32) + 50, TimeMs{1} << 40})
        EXPECT_FALSE(sky.find(kKlm, kNow + later)->altitudeGnss.value) << later;
}

TEST(Sky, FindsAnAircraftByTheLow24BitsOfAnAddress) {
    Sky sky;
    sky.take(heard(kIdentification));
    EXPECT_EQ(sky.find(kKlm | 2U << 24, kNow)->addressKind, AddressKind::Icao) << "not of another kind";
}

TEST(Sky, MakesNoAircraftOfRepairedReplies) {
    for (auto const policy : {RepairedReplies::Keep, RepairedReplies::Known, RepairedReplies::Drop}) {
        SkyOptions options;
        options.repaired = policy;
        Sky sky(options);
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

TEST(Sky, MakesNoAircraftOfAllCallRepliesAndOfAddressesThatAreNotTrusted) {
    Sky sky;
    EXPECT_FALSE(sky.take(frameOf(shortFrame(11, capability(5) | kKlm, 0))).isTracked);
    EXPECT_FALSE(sky.take(frameOf(shortFrame(4, altitudeCode(30'000), 0x123456))).isTracked);
    EXPECT_EQ(sky.size(), 0U);
    sky.take(heard(kIdentification));
    auto const allCall = frameOf(shortFrame(11, capability(5) | kKlm, 0));
    EXPECT_FALSE(sky.take(allCall).isTracked) << "nobody has heard this interrogator before";
    EXPECT_TRUE(sky.take(allCall).isTracked);
}

TEST(Sky, ShowsPositionsWithAgeRadiusDistanceAndBearing) {
    Sky sky(heardFrom({52.3, 4.8}));
    EXPECT_FALSE(sky.take(heard(kPosition)).isPositionShown) << "half a pair";
    EXPECT_TRUE(sky.take(heard(kOddPosition, kNow + 1000)).isPositionShown);
    auto const shown = sky.find(kPositioned, kNow + 3000);
    ASSERT_TRUE(shown && shown->position.value);
    EXPECT_NEAR(shown->position.value->latitude, 52.2658, 0.001);
    EXPECT_NEAR(shown->position.value->longitude, 3.9389, 0.001);
    EXPECT_EQ(shown->age(shown->position.updated), 2000U);
    EXPECT_EQ(shown->altitudeBaro.value, 38'000);
    EXPECT_NEAR(shown->radius.value.value(), 185.2, 0.1) << "type code 11 of version 0";
    EXPECT_NEAR(shown->distance.value.value(), 31.7, 0.2);
    EXPECT_NEAR(shown->bearing.value.value(), 267, 1);
    EXPECT_EQ(shown->distance.source, Source::Derived);
    EXPECT_EQ(shown->distance.updated, kNow + 1000);
    EXPECT_EQ(sky.counts().positions, 1U);
}

TEST(Sky, RefusesPositionsThatTheReceiverCannotHear) {
    Sky sky(heardFrom({-40, 100}));
    for (unsigned i = 0; i < 6; ++i)
        EXPECT_FALSE(sky.take(heard(i % 2 == 0 ? kPosition : kOddPosition, kNow + 1000 * i)).isPositionShown);
    auto const aircraft = sky.find(kPositioned, kNow);
    EXPECT_FALSE(aircraft->position.value);
    EXPECT_EQ(aircraft->position.updated, 0U);
    EXPECT_EQ(aircraft->positionsRefused, 5U);
    EXPECT_EQ(sky.counts().positionsOutOfRange, 5U);
    EXPECT_EQ(sky.counts().positions, 0U);
}

TEST(Sky, ShowsNoPositionOfARepairedMessage) {
    SkyOptions options;
    options.repaired = RepairedReplies::Keep;
    Sky sky(options);
    sky.take(heard(kPosition));
    auto const damaged = withBitsInverted(fromHex(kOddPosition), {80});
    EXPECT_FALSE(sky.take(frameOf(damaged, kNow + 1000)).isPositionShown);
    EXPECT_EQ(sky.counts().positionsRepaired, 1U);
    EXPECT_FALSE(sky.find(kPositioned, kNow)->position.value);
}

TEST(Sky, MergesRebroadcastsWithTheirAircraftAndKeepsOtherAddressesApart) {
    auto const nonTransponder = [](unsigned control, std::string const& me) {
        return frameOf(longFrame(18, capability(control) | kKlm, me, 0));
    };
    Sky sky;
    sky.take(heard(kIdentification));
    EXPECT_TRUE(sky.take(nonTransponder(6, identification("KLM1023"))).isTracked) << "ADS-R";
    EXPECT_TRUE(sky.take(nonTransponder(2, identification("KLM1023"))).isTracked) << "TIS-B";
    EXPECT_EQ(sky.size(), 1U);
    auto const anonymous = sky.take(nonTransponder(1, identification("TRUCK1")));
    EXPECT_TRUE(anonymous.isTracked);
    EXPECT_EQ(sky.size(), 2U);
    EXPECT_EQ(sky.find(kKlm, kNow)->callsign.value, "KLM1023 ");
    EXPECT_EQ(sky.find(anonymous, kNow)->callsign.value, "TRUCK1  ");
    EXPECT_EQ(sky.find(kKlm, kNow, AddressKind::NonIcao)->addressKind, AddressKind::NonIcao);
    auto const all = sky.aircraft(kNow);
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0].addressKind, AddressKind::Icao);
    EXPECT_EQ(all[1].addressKind, AddressKind::NonIcao);
    EXPECT_EQ(all[1].stateCode, "") << "no state assigned it";
}

TEST(Sky, GivesWhatTellsNoKindOfAddressToTheAircraftThatHasIt) {
    auto const tisB = [](std::string const& me) { return frameOf(longFrame(18, capability(2) | kKlm, me, 0)); };
    auto const trackFilePosition = withBits(airbornePosition({93'000, 51'372, false, 0xC3}), 7, 1, 1);
    Sky sky;
    EXPECT_FALSE(sky.take(tisB(identification("TARGET"))).isTracked) << "it may be of anybody";
    EXPECT_TRUE(sky.take(tisB(trackFilePosition)).isTracked);
    auto const reply = sky.take(tisB(identification("TARGET")));
    EXPECT_TRUE(reply.isTracked);
    EXPECT_EQ(sky.size(), 1U);
    EXPECT_EQ(sky.find(reply, kNow)->addressKind, AddressKind::TrackFile);
    EXPECT_EQ(sky.find(kKlm, kNow, AddressKind::TrackFile)->callsign.value, "TARGET  ");
    sky.take(heard(kIdentification));
    sky.take(tisB(identification("OTHER")));
    EXPECT_EQ(sky.find(kKlm, kNow, AddressKind::TrackFile)->callsign.value, "TARGET  ")
        << "an ICAO address comes first";
}

TEST(Sky, OneReplyPutsNoFlightOnTheGround) {
    Sky sky;
    auto const flying = [&](TimeMs time) {
        auto const sent = quorvel::modes::reference::encoded(50, 8, 0);
        auto const bits = PositionBits{sent.latitude, sent.longitude, false, 0xC3, false, 11};
        sky.take(frameOf(squitter(kKlm, airbornePosition(bits)), time));
    };
    flying(kNow);
    auto const grounded = longFrame(21, flightStatus(1) | identityCode(07700), std::string(7, '\0'), kKlm);
    sky.take(frameOf(grounded, kNow + 1000));
    EXPECT_EQ(sky.find(kKlm, kNow)->groundStatus.value, false);
    EXPECT_NE(sky.find(kKlm, kNow)->squawk.value.value_or(Squawk{}).code, 07700);
}

TEST(Sky, IgnoresAltitudesThatJumpIfAskedTo) {
    for (bool const isChecked : {false, true}) {
        SkyOptions options;
        options.altitudeCheck = isChecked;
        Sky sky(options);
        sky.take(heard(kIdentification));
        auto const reports = [&](int feet, TimeMs time) {
            sky.take(frameOf(shortFrame(4, flightStatus(0) | altitudeCode(feet), kKlm), time));
            return *sky.find(kKlm, time)->altitudeBaro.value;
        };
        EXPECT_EQ(reports(10'000, kNow), 10'000);
        EXPECT_EQ(reports(10'150, kNow + 1000), 10'150);
        EXPECT_EQ(reports(12'000, kNow + 2000), isChecked ? 10'150 : 12'000);
        EXPECT_EQ(reports(12'000, kNow + 6000), 12'000) << "after 4 s it may be so";
    }
}

TEST(Sky, SaysWhichRegisterAReplyHolds) {
    Sky sky;
    sky.take(heard(kIdentification));
    auto const callsign = identification("KLM1023").replace(0, 1, "\x20");
    auto const reply = sky.take(frameOf(longFrame(20, altitudeCode(38'000), callsign, kKlm)));
    ASSERT_TRUE(reply.registerChoice);
    EXPECT_EQ(reply.registerChoice->best, Register::AircraftIdentification);
    EXPECT_FALSE(reply.registerChoice->isUnsure);
    EXPECT_FALSE(sky.take(heard(kIdentification)).registerChoice);
}

TEST(Sky, DropsAircraftThatHaveFallenSilent) {
    Sky sky;
    sky.setTimeout(60'000);
    sky.take(heard(kIdentification));
    sky.take(heard(kPosition, kNow + 30'000));
    sky.dropSilent(kNow + 59'999);
    EXPECT_EQ(sky.size(), 2U);
    sky.dropSilent(kNow + 60'000);
    EXPECT_EQ(sky.size(), 1U);
    EXPECT_EQ(sky.counts().targetsDropped, 1U);
    EXPECT_EQ(sky.aircraft(kNow).at(0).address, kPositioned);
    EXPECT_FALSE(sky.find(kKlm, kNow));
    sky.dropAll();
    EXPECT_EQ(sky.size(), 0U);
    EXPECT_EQ(sky.counts().targetsDropped, 2U);
}

TEST(Sky, DropsAircraftThatWereHeardAfterThePresentWhateverTheTimeout) {
    Sky sky;
    auto const before = kNow + 3'600'000;
    sky.take(heard(kIdentification, before));
    sky.take(heard(kPosition, before));
    sky.take(heard(kPosition, kNow)); // whose other items are still those of before
    sky.take(frameOf(emptySquitter(77), kNow));
    sky.take(frameOf(emptySquitter(78), kNow + 1000)); // another source is a second ahead
    sky.dropSilent(kNow);
    EXPECT_EQ(sky.counts().targetsDropped, 2U);
    EXPECT_EQ(sky.size(), 2U);
    sky.take(heard(kPosition, kNow + 2000));
    sky.dropSilent(kNow + 2000);
    EXPECT_EQ(sky.size(), 3U) << "it is back with the times of now";
}

TEST(Sky, KeepsAHundredThousandAircraftAndMakesRoomAmongTheSilent) {
    Sky sky;
    for (std::uint32_t i = 1; i <= 100'000; ++i) sky.take(frameOf(emptySquitter(i), kNow + i / 10));
    EXPECT_EQ(sky.size(), 100'000U);
    EXPECT_FALSE(sky.take(frameOf(emptySquitter(200'000), kNow + 10'000)).isTracked) << "none has been silent for long";
    EXPECT_EQ(sky.counts().tableFull, 1U);
    EXPECT_TRUE(sky.take(frameOf(emptySquitter(77), kNow + 10'001)).isTracked) << "known ones are updated";

    auto const later = kNow + 60'000;
    EXPECT_TRUE(sky.take(frameOf(emptySquitter(200'000), later)).isTracked);
    EXPECT_GT(sky.counts().targetsMadeRoom, 0U);
    EXPECT_EQ(sky.counts().targetsMadeRoom, sky.counts().targetsDropped);
    EXPECT_FALSE(sky.find(1, later)) << "the oldest goes first";
    EXPECT_TRUE(sky.find(77, later));
    EXPECT_TRUE(sky.find(100'000, later));
    EXPECT_EQ(sky.size(), 100'001 - sky.counts().targetsMadeRoom);
}

TEST(Sky, AReplayAtAnySpeedGivesTheSameAircraft) {
    Frames frames;
    for (unsigned i = 0; i < 40; ++i) frames.push_back(heard(i % 2 == 0 ? kPosition : kOddPosition, kNow + 500 * i));
    Sky once;
    for (auto const& frame : frames) once.take(frame);
    Sky again;
    for (auto const& frame : frames) again.take(frame);
    auto const a = once.find(kPositioned, kNow + 60'000);
    auto const b = again.find(kPositioned, kNow + 60'000);
    visitItems(*a, [&](ItemText const& text, auto const& item) {
        visitItems(*b, [&](ItemText const& otherText, auto const& other) {
            if (text.name != otherText.name) return;
            EXPECT_EQ(item.updated, other.updated) << text.name;
            EXPECT_EQ(item.changed, other.changed) << text.name;
        });
    });
    EXPECT_EQ(once.counts().positions, again.counts().positions);
}
