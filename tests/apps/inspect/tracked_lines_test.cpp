// SPDX-License-Identifier: MIT
#include "inspect/tracked_lines.h"

#include "reference/cpr_encoder.h"
#include "support/frames.h"

#include <gtest/gtest.h>

#include <vector>

namespace quorvel::inspect {

namespace {

using namespace modes::test;

constexpr std::uint32_t kAddress = 0xABCDEF;

// Fits 5,0 and 6,0: as the latter, a heading of 301.8 degrees at 229 kt, which goes with 227 kt over ground at 7,000 ft.
constexpr char kSpeeds[] = "EB59CB18BFF401";
constexpr char kVelocity[] = "9944A114400491";

std::string position(bool isOdd, bool supplementB = false) {
    auto const sent = modes::reference::encoded(48.5, 11.5, isOdd ? 1 : 0);
    return squitter(kAddress, airbornePosition({sent.latitude, sent.longitude, isOdd, 0x38, supplementB}));
}

std::string velocity() { return squitter(kAddress, fromHex(kVelocity)); }

std::string speeds() { return longFrame(20, altitudeCode(7000), fromHex(kSpeeds), kAddress); }

// One second apart.
std::string linesOf(std::vector<std::string> const& frames) {
    TrackedLines tracked({});
    double seconds = 0.0;
    for (auto const& frame : frames) tracked.take(airspace::Frame::of(frame), ++seconds);
    return tracked.lines();
}

bool holds(std::string const& lines, std::string const& text) { return lines.find(text) != lines.npos; }

} // namespace

TEST(TrackedLines, GiveThePositionsOfAPairInTheOrderOfTheFrames) {
    auto const lines = linesOf({velocity(), position(false), velocity(), position(true)});
    EXPECT_EQ(lines.find(R"({"i":1,"icao":"ABCDEF","latitude":48.)"), 0U) << lines;
    EXPECT_TRUE(holds(lines, "\"src\":\"pair\"}\n{\"i\":3,\"icao\":\"ABCDEF\",")) << lines;
}

TEST(TrackedLines, TellTheIntegrityByTheLastOperationalStatusBefore) {
    auto const status = squitter(kAddress, operationalStatus(2, true));
    auto const lines = linesOf({position(false), status, position(true, true)});
    EXPECT_TRUE(holds(lines, R"("src":"pair"})")) << lines;
    EXPECT_TRUE(holds(lines, R"("src":"pair","version":2,"nic":9,"rc":75})")) << lines;
}

TEST(TrackedLines, LeaveOutDamagedPositions) {
    auto damaged = position(true);
    damaged[8] = static_cast<char>(damaged[8] ^ 1);
    EXPECT_EQ(linesOf({position(false), damaged}), "");
}

TEST(TrackedLines, ChooseARegisterByWhatWasHeardBefore) {
    auto const lines = linesOf({velocity(), speeds()});
    EXPECT_EQ(lines.find(R"({"i":1,"icao":"ABCDEF","bds":"6,0","magnetic_heading":)"), 0U) << lines;
}

TEST(TrackedLines, ChooseARegisterByWhatIsHeardLater) {
    auto const lines = linesOf({speeds(), velocity()});
    EXPECT_EQ(lines.find(R"({"i":0,"icao":"ABCDEF","bds":"6,0","magnetic_heading":)"), 0U) << lines;
}

TEST(TrackedLines, ChooseNoRegisterOfAnAddressThatNothingElseHas) { EXPECT_EQ(linesOf({speeds()}), ""); }

TEST(TrackedLines, LeaveOutRepliesThatFitOneRegisterAlone) {
    auto const callsign = longFrame(20, altitudeCode(7000), fromHex("200414B5D32820"), kAddress);
    EXPECT_EQ(linesOf({velocity(), callsign}), "");
}

} // namespace quorvel::inspect
