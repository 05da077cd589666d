// SPDX-License-Identifier: MIT
#include "inspect/recording_stats.h"

#include "support/captured_log.h"
#include "support/frames.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace quorvel::inspect {

namespace {

using namespace modes::test;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr airspace::TimeMs kNoon = 43'200'000;
constexpr unsigned kAddress = 0x4840D6;
RecordingTitle const kTitle{"test", airspace::Encoding::Beast, airspace::TimeReading::Receiver, false};

class StatsTest : public ::testing::Test {
protected:
    void hear(std::string const& bytes, airspace::TimeMs sinceNoon = 0, std::uint8_t signal = 0) {
        auto frame = airspace::Frame::of(bytes, kNoon + sinceNoon);
        frame.signal = signal;
        _stats.take(frame);
        ++(bytes.size() == airspace::kModeAcFrameBytes ? _reading.modeAcFrames : _reading.frames);
    }

    RecordingStats& finished() {
        _stats.finish(_reading);
        return _stats;
    }

    std::string text(std::size_t aircraft = 10) {
        return statsText(kTitle, finished(), aircraft, terminal::TerminalStyle());
    }

private:
    CapturedLog _log;
    RecordingStats _stats{true};

protected:
    airspace::Counts _reading; // as a reader of these frames has it
};
using Stats = StatsTest;

} // namespace

TEST_F(Stats, CountParityByWhatItCanSay) {
    auto const intact = squitter(kAddress, identification("KLM1023"));
    hear(intact);
    hear(withBitsInverted(intact, {40}));
    hear(withBitsInverted(intact, {40, 60, 80}));
    hear(shortFrame(11, capability(5) | kAddress, 3));
    hear(shortFrame(11, capability(5) | kAddress, 0x123456));
    hear(shortFrame(4, altitudeCode(18800), kAddress));
    hear(shortFrame(1, 0, 0));
    hear(longFrame(19, 1U << 24, payload(0), 0x123456));
    auto const& parity = finished().parity();
    EXPECT_EQ(parity.right, 2U);
    EXPECT_EQ(parity.repaired, 1U);
    EXPECT_EQ(parity.wrong, 2U);
    EXPECT_EQ(parity.overlaid, 1U);
    EXPECT_EQ(parity.unknown, 2U);
}

TEST_F(Stats, CountRepliesCallsignAndVersionOfEachAircraft) {
    hear(squitter(kAddress, identification("KLM1023")), 0);
    hear(squitter(kAddress, operationalStatus(2)), 100);
    hear(shortFrame(4, altitudeCode(18800), kAddress), 200);
    hear(squitter(0x4CA2D4, payload(23)), 300);
    auto const& aircraft = finished().aircraft();
    ASSERT_EQ(aircraft.size(), 2U);
    EXPECT_EQ(aircraft.at(airspace::addressText(kAddress)).replies, 3U);
    EXPECT_THAT(aircraft.at(airspace::addressText(kAddress)).callsign, HasSubstr("KLM1023"));
    EXPECT_EQ(aircraft.at(airspace::addressText(kAddress)).version, 2U);
    EXPECT_EQ(aircraft.at("4CA2D4").version, std::nullopt);
}

TEST_F(Stats, MakeNoAircraftOfRepairedFrames) {
    hear(withBitsInverted(squitter(kAddress, identification("KLM1023")), {40}));
    auto const& stats = finished();
    EXPECT_TRUE(stats.aircraft().empty());
    EXPECT_EQ(stats.counters().repairedRefused, 1U);
}

TEST_F(Stats, CountTypeCodesOfADSBMessagesOnly) {
    hear(squitter(kAddress, identification("KLM1023")));
    hear(squitter(kAddress, operationalStatus(2)));
    hear(longFrame(18, 2U << 24 | kAddress, identification("KLM1023"), 0));
    auto const& codes = finished().typeCodes();
    EXPECT_EQ(codes[4], 2U) << "those of a traffic information service are of the same types";
    EXPECT_EQ(codes[31], 1U);
}

TEST_F(Stats, CountSignalLevelsInBands) {
    auto const frame = squitter(kAddress, identification("KLM1023"));
    for (unsigned const signal : {0U, 1U, 15U, 16U, 255U}) hear(frame, 0, static_cast<std::uint8_t>(signal));
    auto const& signals = finished().signals();
    EXPECT_EQ(signals[0], 2U);
    EXPECT_EQ(signals[1], 1U);
    EXPECT_EQ(signals[15], 1U);
}

TEST_F(Stats, CountWhatWasReadOnce) {
    hear(fromHex("7700"));
    hear(squitter(kAddress, identification("KLM1023")));
    _reading.badLines = 7;
    auto const& counters = finished().counters();
    EXPECT_EQ(counters.frames, 1U);
    EXPECT_EQ(counters.modeAcFrames, 1U);
    EXPECT_EQ(counters.badLines, 7U);
    EXPECT_EQ(counters.byFormat[17], 1U);
}

TEST_F(Stats, ListAircraftInOrderOfReplies) {
    hear(squitter(1, identification("ONE")), 0);
    for (airspace::TimeMs i = 1; i < 4; ++i) hear(squitter(2, identification("TWO")), i);
    auto const report = text(1);
    EXPECT_THAT(report, HasSubstr("    000002  TWO       -              3\n    and 1 more\n"));
    EXPECT_THAT(report, Not(HasSubstr("ONE")));
    EXPECT_THAT(report, HasSubstr("    DF17 extended squitter  4  100.0 %  ###"));
    EXPECT_THAT(report, HasSubstr("    unknown  2  100.0 %  ###"));
}

TEST_F(Stats, ShowGapsWithStartAndLength) {
    hear(squitter(kAddress, identification("KLM1023")), 0);
    hear(squitter(kAddress, identification("KLM1023")), 3'661'500);
    hear(squitter(kAddress, identification("KLM1023")), 3'661'600);
    auto const report = text();
    EXPECT_THAT(report, HasSubstr("  Gaps of more than 10 s\n"
                                  "    Start             Length\n"
                                  "    12:00:00.000  3661.500 s\n"));
    EXPECT_THAT(report, HasSubstr("12:00:00.000 to 13:01:01.600 of an unknown day\n"));
}

TEST_F(Stats, ShowDatesWhereTheDayIsKnown) {
    hear(squitter(kAddress, identification("KLM1023")), 1'714'521'600'000 - kNoon);
    auto title = kTitle;
    title.isDated = true;
    auto const& stats = finished();
    EXPECT_THAT(statsText(title, stats, 1, terminal::TerminalStyle()),
        HasSubstr("2024-05-01T00:00:00.000Z to 2024-05-01T00:00:00.000Z\n"));
    EXPECT_EQ(nlohmann::json::parse(statsJson(title, stats))["time"]["first"], "2024-05-01T00:00:00.000Z");
}

TEST_F(Stats, AreOneLineOfJson) {
    hear(squitter(kAddress, identification("KLM1023")), 0, 100);
    hear(squitter(kAddress, operationalStatus(1)), 2000, 100);
    auto const line = statsJson(kTitle, finished());
    EXPECT_EQ(line.find('\n'), line.size() - 1);
    auto const json = nlohmann::json::parse(line);
    EXPECT_EQ(json["encoding"], "beast");
    EXPECT_EQ(json["time"]["seconds"], 2.0);
    EXPECT_EQ(json["time"]["meanRate"], 1.0);
    EXPECT_EQ(json["time"]["framesByInterval"], nlohmann::json({1, 0, 1}));
    EXPECT_EQ(json["formats"], nlohmann::json({{"17", 2}}));
    EXPECT_EQ(json["typeCodes"], nlohmann::json({{"4", 1}, {"31", 1}}));
    EXPECT_EQ(json["parity"]["right"], 2);
    EXPECT_EQ(json["confidence"]["high"], 2);
    EXPECT_EQ(json["aircraft"][0]["icaoAddress"], "4840D6");
    EXPECT_EQ(json["aircraft"][0]["callsign"], "KLM1023");
    EXPECT_EQ(json["aircraft"][0]["mopsVersion"], 1);
    EXPECT_EQ(json["signalBands"][6], 2);
    EXPECT_EQ(json["counters"]["targets_made"], 1);
}

TEST(StatsOfAnUntimedRecording, ShowNoRates) {
    CapturedLog const log;
    RecordingStats stats(false);
    airspace::Counts reading;
    reading.frames = 1;
    stats.finish(reading);
    EXPECT_THAT(statsText(kTitle, stats, 1, terminal::TerminalStyle()), HasSubstr("  Time        no time stamps\n"));
    EXPECT_TRUE(nlohmann::json::parse(statsJson(kTitle, stats))["time"].is_null());
}

} // namespace quorvel::inspect
