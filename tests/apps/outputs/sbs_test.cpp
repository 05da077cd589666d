// SPDX-License-Identifier: MIT
#include "outputs/sbs.h"

#include "pictures.h"
#include "support/frames.h"

#include <airspace/sky.h>
#include <modes/df_message.h>

#include <gtest/gtest.h>

using namespace quorvel;
using namespace quorvel::outputs::test;

namespace {

constexpr unsigned kAddress = 0x4840D6;

// Decodes and tracks frames one second after the other, and gives the lines that they lead to.
class SbsLines : public testing::Test {
protected:
    std::string hear(std::string const& bytes) {
        auto const frame = airspace::Frame::of(bytes, _time += 1000);
        auto const reply = _sky.take(frame);
        auto const found = _sky.find(reply, _time);
        if (!found) return "not tracked";
        outputs::Aircraft const aircraft{*found, "", {}, {}};
        _written.items.clear();
        _sbs.heard({frame, reply, &aircraft});
        return _written.text();
    }

    std::string hearSquitter(std::string const& payload) { return hear(modes::test::squitter(kAddress, payload)); }

    airspace::Sky _sky;
    airspace::TimeMs _time = kNow - 1000;
    Written _written;
    outputs::Sbs _sbs{sinkTo(_written)};
};

// The line of an identification that was heard at a time, and left an aircraft so.
std::string lineOf(outputs::Aircraft const& aircraft, airspace::TimeMs time) {
    airspace::Reply reply;
    airspace::ExtendedSquitter squitter;
    squitter.content = airspace::Identification();
    reply.message = squitter;
    return outputs::sbsLine({airspace::Frame::of("", time), reply, &aircraft});
}

std::size_t fields(std::string const& line) {
    return static_cast<std::size_t>(std::count(line.begin(), line.end(), ',')) + 1;
}

} // namespace

TEST_F(SbsLines, ReportIdentifications) {
    EXPECT_EQ(hearSquitter(modes::test::identification("KLM1023")),
        "MSG,1,1,1,4840D6,1,2024/05/01,12:34:56.789,2024/05/01,12:34:56.789,KLM1023,,,,,,,,,,,0\r\n");
}

TEST_F(SbsLines, ReportAirbornePositionsOnceBothHalvesAreThere) {
    modes::test::PositionBits even{93000, 51372, false, 0xC3}, odd{74158, 50194, true, 0xC3};
    EXPECT_EQ(hearSquitter(modes::test::airbornePosition(even)),
        "MSG,3,1,1,4840D6,1,2024/05/01,12:34:56.789,2024/05/01,12:34:56.789,,37800,,,,,,,0,,0,0\r\n");
    EXPECT_EQ(hearSquitter(modes::test::airbornePosition(odd)),
        "MSG,3,1,1,4840D6,1,2024/05/01,12:34:57.789,2024/05/01,12:34:57.789,,37800,,,52.26578,3.93891,,,0,,0,"
        "0\r\n");
}

TEST_F(SbsLines, ReportSurfacePositionsWithoutWhatTheyDidNotBring) {
    EXPECT_EQ(hearSquitter(modes::test::payload(6)),
        "MSG,2,1,1,4840D6,1,2024/05/01,12:34:56.789,2024/05/01,12:34:56.789,,,,,,,,,,,,-1\r\n");
}

TEST_F(SbsLines, ReportVelocities) {
    modes::test::VelocityBits bits;
    bits.east = 301, bits.north = 401;
    bits.rateHighBits = 1;
    EXPECT_EQ(hearSquitter(modes::test::airborneVelocity(bits)),
        "MSG,4,1,1,4840D6,1,2024/05/01,12:34:56.789,2024/05/01,12:34:56.789,,,500.0,36.9,,,4032,,,,,0\r\n");
}

TEST_F(SbsLines, ReportSurveillanceReplies) {
    hearSquitter(modes::test::identification("KLM1023"));
    auto const when = std::string("2024/05/01,12:34:57.789,2024/05/01,12:34:57.789");
    using namespace modes::test;
    EXPECT_EQ(hear(shortFrame(4, flightStatus(2) | altitudeCode(38000), kAddress)),
        "MSG,5,1,1,4840D6,1," + when + ",,38000,,,,,,,-1,,0,\r\n");
}

TEST_F(SbsLines, ReportIdentityRepliesWithEmergencies) {
    hearSquitter(modes::test::identification("KLM1023"));
    using namespace modes::test;
    auto const emergency = shortFrame(5, flightStatus(4) | identityCode(07700), kAddress);
    EXPECT_EQ(hear(emergency).substr(66), ",,,,,,,,,-1,,-1,\r\n") << "a second reply must say the same";
    EXPECT_EQ(hear(emergency).substr(66), ",,,,,,,,7700,-1,-1,-1,\r\n");
    auto const landed = shortFrame(5, flightStatus(1) | identityCode(04032), kAddress);
    hear(landed);
    EXPECT_EQ(hear(landed).substr(66), ",,,,,,,,4032,0,0,0,\r\n") << "it squitters that it is airborne";
}

TEST_F(SbsLines, ReportLongRepliesLikeShortOnes) {
    hearSquitter(modes::test::identification("KLM1023"));
    using namespace modes::test;
    std::string const payload(7, '\0');
    EXPECT_EQ(hear(longFrame(20, altitudeCode(5000), payload, kAddress)).substr(0, 6), "MSG,5,");
    EXPECT_EQ(hear(longFrame(21, identityCode(01234), payload, kAddress)).substr(0, 6), "MSG,6,");
    EXPECT_EQ(hear(longFrame(16, altitudeCode(5000), payload, kAddress)).substr(0, 6), "MSG,7,");
}

TEST_F(SbsLines, ReportAirToAirAndAllCallReplies) {
    hearSquitter(modes::test::identification("KLM1023"));
    using namespace modes::test;
    EXPECT_EQ(hear(shortFrame(0, verticalStatus(1) | altitudeCode(1000), kAddress)).substr(0, 6), "MSG,7,");
    auto const allCall = shortFrame(11, capability(5) | kAddress, 0);
    for (int i = 0; i < 10; ++i) hear(allCall); // so many make the interrogator known
    EXPECT_EQ(hear(allCall), "MSG,8,1,1,4840D6,1,2024/05/01,12:35:08.789,2024/05/01,12:35:08.789,,,,,,,,,,,,\r\n");
}

TEST_F(SbsLines, AlwaysHaveTwentyTwoFields) {
    auto aircraft = knownAircraft(0);
    auto const line = lineOf(aircraft, kNow);
    EXPECT_EQ(line, "MSG,1,1,7,4840D6,7,2024/05/01,12:34:56.789,2024/05/01,12:34:56.789,KLM1023,38000,451.2,92.5,"
                    "52.25000,-3.93750,-640,4032,,0,,0\r\n");
    EXPECT_EQ(fields(line), 22U);
    EXPECT_EQ(fields(lineOf(aircraft, kNow + 1)), 22U);
}

TEST_F(SbsLines, KeepCommasAndControlCharactersOutOfTheCallsign) {
    auto aircraft = knownAircraft(0);
    aircraft.callsign.value = "A,B\r\nC\xFF";
    auto const line = lineOf(aircraft, kNow);
    EXPECT_NE(line.find(",A?B??C?,"), std::string::npos) << line;
    EXPECT_EQ(fields(line), 22U);
}

TEST_F(SbsLines, HaveTheVerticalRateByGnssWhereThereIsNoOther) {
    auto aircraft = knownAircraft(0);
    aircraft.verticalRateBaro = {};
    aircraft.verticalRateGnss = {-704, airspace::Source::AdsB, kNow, 0};
    EXPECT_NE(lineOf(aircraft, kNow).find(",-704,"), std::string::npos);
}

TEST_F(SbsLines, AreNotWrittenForAddressesThatTheFormatDoesNotHave) {
    auto aircraft = knownAircraft(0);
    aircraft.addressKind = airspace::AddressKind::TrackFile;
    EXPECT_EQ(lineOf(aircraft, kNow), "");
}

TEST_F(SbsLines, AreNotWrittenForOtherMessagesOrWithoutAircraft) {
    EXPECT_EQ(hearSquitter(modes::test::operationalStatus(2)), "");
    _sbs.heard({frameOf("00"), _sky.take(frameOf("8D4840D6202CC371C32CE0576098")), nullptr});
    _sbs.heard({frameOf("00"), {}, nullptr});
    EXPECT_EQ(_written.text(), "");
    EXPECT_EQ(_sbs.wants(), outputs::Output::Wants::FramesWithAircraft);
}

TEST_F(SbsLines, AreHandedOnWithEachPicture) {
    _sbs.flush();
    EXPECT_EQ(_written.flushes, 1);
}
