// SPDX-License-Identifier: MIT
#include <modes/adsb_tracker.h>

#include <modes/adsb_target_report.h>

#include "reference/track_numbers.h"
#include "support/captured_log.h"
#include "support/temporary_folder.h"
#include "track/replies.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <type_traits>
#include <vector>

namespace quorvel::modes {
namespace {

using namespace test;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr unsigned kAddress = 0x4840D6;

std::vector<unsigned> addressesOf(std::vector<std::shared_ptr<ADSBTarget>> const& targets) {
    std::vector<unsigned> addresses;
    for (auto const& target : targets) addresses.push_back(target->icaoAddr());
    return addresses;
}

std::shared_ptr<ADSBTarget> heardAt(ADSBTracker& tracker, unsigned address, unsigned long long time) {
    auto target = tracker.createTarget(address);
    target->setLastUpdate(time);
    return target;
}

static_assert(!std::is_copy_constructible_v<ADSBTracker> && !std::is_move_constructible_v<ADSBTracker>);
static_assert(!std::is_copy_assignable_v<ADSBTracker> && !std::is_move_assignable_v<ADSBTracker>);

TEST(ADSBTracker, SaysThatItIsReady) {
    CapturedLog log;
    ADSBTracker const tracker;
    EXPECT_THAT(log.lines(), ElementsAre(LogLine{Log::Info, "ADSBDecoder", "Initialized."},
                                 LogLine{Log::Info, "ADSBTracker", "Initialized."}));
    EXPECT_THAT(tracker.allTargets(), IsEmpty());
}

TEST(ADSBTracker, MakesOneTargetForAnAddress) {
    ADSBTracker tracker;
    auto const first = tracker.createTarget(kAddress);
    auto const second = tracker.createTarget(0x123456);
    EXPECT_EQ(first->trackId(), 1U);
    EXPECT_TRUE(first->trackIdValid());
    EXPECT_EQ(first->icaoAddr(), kAddress);
    EXPECT_EQ(second->trackId(), 2U);
    EXPECT_EQ(tracker.createTarget(kAddress), first);
    EXPECT_EQ(tracker.getNextTrackId(), 3U);
}

TEST(ADSBTracker, FindsTargetsByAddress) {
    ADSBTracker tracker;
    EXPECT_FALSE(tracker.findTarget(kAddress));
    EXPECT_FALSE(tracker.findConstTarget(kAddress));
    auto const target = tracker.createTarget(kAddress);
    EXPECT_EQ(tracker.findTarget(kAddress), target);
    EXPECT_EQ(tracker.findConstTarget(kAddress), target);
    EXPECT_FALSE(tracker.findTarget(0));
}

TEST(ADSBTracker, RunsOutOfNumbersAfter4095Targets) {
    ADSBTracker tracker;
    for (unsigned i = 1; i <= 4095; ++i) ASSERT_EQ(tracker.createTarget(i)->trackId(), i);
    EXPECT_EQ(tracker.getNextTrackId(), 0U);
    EXPECT_FALSE(tracker.createTarget(4096));
    EXPECT_FALSE(tracker.findTarget(4096));
    EXPECT_TRUE(tracker.createTarget(4095)); // known ones are still found
    EXPECT_TRUE(tracker.killTarget(77, 77));
    EXPECT_EQ(tracker.createTarget(4096)->trackId(), 77U);
    EXPECT_FALSE(tracker.procDF4Msg(reply<DF4Message>(shortFrame(4, 0, 0x777777), 100)));
}

TEST(ADSBTracker, ReusesANumberOnlyAfterTheWrap) {
    ADSBTracker tracker;
    for (unsigned i = 1; i < 10; ++i) tracker.createTarget(i);
    EXPECT_TRUE(tracker.killTarget(1, 1));
    for (unsigned id = 10; id <= 4095; ++id) ASSERT_EQ(tracker.createTarget(1000 + id)->trackId(), id);
    EXPECT_EQ(tracker.createTarget(900)->trackId(), 1U);
}

TEST(ADSBTracker, NumbersAnewAfterAReset) {
    ADSBTracker tracker;
    auto const kept = tracker.createTarget(1);
    tracker.createTarget(2);
    tracker.reset();
    EXPECT_THAT(tracker.allTargets(), IsEmpty());
    EXPECT_EQ(kept->trackId(), 1U); // lives on with the host
    EXPECT_EQ(tracker.createTarget(3)->trackId(), 1U);
    EXPECT_EQ(tracker.createTarget(1)->trackId(), 2U);
}

TEST(ADSBTracker, ListsTargetsByAddressAndTime) {
    ADSBTracker tracker;
    heardAt(tracker, 30, 100);
    heardAt(tracker, 10, 300);
    heardAt(tracker, 20, 200);
    EXPECT_THAT(addressesOf(tracker.allTargets()), ElementsAre(10, 20, 30));
    EXPECT_THAT(addressesOf(tracker.allTargetsSince(0)), ElementsAre(10, 20, 30));
    EXPECT_THAT(addressesOf(tracker.allTargetsSince(100)), ElementsAre(10, 20));
    EXPECT_THAT(addressesOf(tracker.allTargetsSince(300)), IsEmpty());
    EXPECT_THAT(addressesOf(tracker.allTargetsSince(100, 200)), ElementsAre(20));
    EXPECT_THAT(addressesOf(tracker.allTargetsSince(99, 199)), ElementsAre(30));
    EXPECT_THAT(addressesOf(tracker.allTargetsSince(300, 100)), IsEmpty());
}

TEST(ADSBTracker, KillsATargetUnderItsOwnNumberOnly) {
    ADSBTracker tracker;
    auto const target = tracker.createTarget(kAddress);
    tracker.createTarget(7);
    CapturedLog log;
    EXPECT_FALSE(tracker.killTarget(2, kAddress));
    EXPECT_FALSE(tracker.killTarget(1, 8));
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(tracker.killTarget(1, kAddress), target);
    EXPECT_THAT(log.take(), Holds(Log::Debug, "ADSBTracker", "Target #1 killed."));
    EXPECT_FALSE(tracker.findTarget(kAddress));
    EXPECT_TRUE(tracker.findTarget(7));
}

TEST(ADSBTracker, KillsWhatWasNotHeardSince) {
    ADSBTracker tracker;
    heardAt(tracker, 30, 100);
    heardAt(tracker, 10, 200);
    heardAt(tracker, 20, 201);
    heardAt(tracker, 5, 0);
    CapturedLog log;
    EXPECT_THAT(addressesOf(tracker.killTargets(200)), ElementsAre(5, 10, 30));
    EXPECT_THAT(log.lines(), ElementsAre(LogLine{Log::Debug, "ADSBTracker", "Target #4 killed."},
                                 LogLine{Log::Debug, "ADSBTracker", "Target #2 killed."},
                                 LogLine{Log::Debug, "ADSBTracker", "Target #1 killed."}));
    EXPECT_THAT(addressesOf(tracker.allTargets()), ElementsAre(20));
    EXPECT_THAT(tracker.killTargets(200), IsEmpty());
}

std::string contentOf(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(ADSBTracker, LetsTheDatabaseLearnFromKilledTargetsButNotFromForgottenOnes) {
    TemporaryFolder const folder;
    auto const path = folder.write("aircraft.csv", "icao_addr,mops_version,airline\n");
    ADSBTracker tracker;
    tracker.setAircraftDbFile(path);
    auto const confirmed = [&](unsigned address, char const* callsign) {
        auto const target = heardAt(tracker, address, 100);
        target->setCallsign(callsign, 100);
        target->setMOPSVersion(MOPS_V2, 100);
        target->setMOPSVersionConfirmed(100);
        return target;
    };
    confirmed(0xABCDEF, "AFR001  ");
    tracker.reset();
    confirmed(0x4840D6, "KLM1023 ");
    tracker.killTarget(1, 0x4840D6);
    confirmed(0x3C6586, "DLH4YA  ");
    heardAt(tracker, 0x111111, 100); // version only assumed
    tracker.killTargets(100);
    tracker.saveAircraftDb();
    EXPECT_EQ(contentOf(path), "icao_addr,mops_version,airline\n3C6586,2,DLH\n4840D6,2,KLM\n");
}

TEST(ADSBTracker, SavesToTheOldFileBeforeItLoadsTheNew) {
    TemporaryFolder const folder;
    auto const first = folder.write("first.csv", "icao_addr,mops_version,airline\n");
    auto const second = folder.write("second.csv", "icao_addr,mops_version,airline\n3C6586,1,DLH\n");
    ADSBTracker tracker;
    tracker.saveAircraftDb(); // no file yet: nothing happens
    tracker.setAircraftDbFile(first);
    auto const target = tracker.createTarget(kAddress);
    target->setMOPSVersionConfirmed(100);
    tracker.killTarget(1, kAddress);
    tracker.setAircraftDbFile(second);
    EXPECT_EQ(contentOf(first), "icao_addr,mops_version,airline\n4840D6,0,\n");
    tracker.saveAircraftDb();
    EXPECT_EQ(contentOf(second), "icao_addr,mops_version,airline\n3C6586,1,DLH\n4840D6,0,\n");
}

TEST(ADSBTracker, LetsTheFailureToReadAFilePass) {
    ADSBTracker tracker;
    EXPECT_THROW(tracker.setAircraftDbFile(TemporaryFolder().path("missing.csv")), std::ios_base::failure);
}

TEST(ADSBTracker, TakesEveryAltitudeWithoutChecking) {
    ADSBTracker tracker;
    auto const target = tracker.createTarget(kAddress);
    tracker.updateTargetAltituteBaro(target, 10'000, 1000);
    tracker.updateTargetAltituteBaro(target, 30'000, 1001);
    EXPECT_EQ(target->altitudeBaro(), 30'000);
    EXPECT_EQ(target->altitudeBaroLastUpdate(), 1001U);
    tracker.updateTargetAltituteBaro(nullptr, 10'000, 1000);
}

TEST(ADSBTracker, IgnoresAnAltitudeThatJumps) {
    struct {
        char const* what;
        int altitude;
        unsigned long long after; // ms
        bool accepted;
    } const rows[] = {
        {"up too far", 10'500, 1000, false},
        {"down too far", 9'500, 1000, false},
        {"one foot too far", 10'151, 0, false},
        {"just near enough", 10'150, 0, true},
        {"just near enough below", 9'850, 3999, true},
        {"just too early", 10'500, 3999, false},
        {"just late enough", 10'500, 4000, true},
        {"the farthest above", 2'147'483'647, 1, false},
        {"the farthest below", -2'147'483'647 - 1, 1, false},
    };
    for (auto const& row : rows) {
        ADSBTracker tracker;
        tracker.setAltituteBaroChecking(true, 4, 150);
        auto const target = tracker.createTarget(kAddress);
        tracker.updateTargetAltituteBaro(target, 10'000, 50'000);
        tracker.updateTargetAltituteBaro(target, row.altitude, 50'000 + row.after);
        EXPECT_EQ(target->altitudeBaro(), row.accepted ? row.altitude : 10'000) << row.what;
        EXPECT_EQ(target->altitudeBaroLastUpdate(), 50'000 + (row.accepted ? row.after : 0)) << row.what;
    }
}

TEST(ADSBTracker, NeverRejectsTheFirstAltitudeOrOneFromThePast) {
    ADSBTracker tracker;
    tracker.setAltituteBaroChecking(true, 4, 150);
    auto const target = tracker.createTarget(kAddress);
    tracker.updateTargetAltituteBaro(target, 10'000, 100); // within 4 s of 0, but there was none
    EXPECT_EQ(target->altitudeBaro(), 10'000);
    tracker.updateTargetAltituteBaro(target, 20'000, 99); // an age of almost 2^64 ms
    EXPECT_EQ(target->altitudeBaro(), 20'000);
}

TEST(ADSBTracker, MultipliesTheCheckPeriodIn32Bits) {
    ADSBTracker tracker;
    tracker.setAltituteBaroChecking(true, 4'294'968, 0); // * 1000 = 2^32 + 704
    auto const target = tracker.createTarget(kAddress);
    tracker.updateTargetAltituteBaro(target, 10'000, 50'000);
    tracker.updateTargetAltituteBaro(target, 10'001, 50'703);
    EXPECT_EQ(target->altitudeBaro(), 10'000);
    tracker.updateTargetAltituteBaro(target, 10'001, 50'704);
    EXPECT_EQ(target->altitudeBaro(), 10'001);
}

TEST(ADSBTracker, KeepsTheAltitudeCheckOverAReset) {
    ADSBTracker tracker;
    tracker.setAltituteBaroChecking(true, 4, 0xFFFFFFFF);
    tracker.setAltituteBaroChecking(true, 4, 150);
    tracker.reset();
    auto const target = tracker.createTarget(kAddress);
    tracker.updateTargetAltituteBaro(target, 10'000, 1000);
    tracker.updateTargetAltituteBaro(target, 20'000, 1001);
    EXPECT_EQ(target->altitudeBaro(), 10'000);
}

// Reports renumber targets; what is handed out stays what a search through all targets would find.
TEST(ADSBTracker, NumbersAsASearchThroughAllTargetsWould) {
    unsigned const seed = 4711;
    std::mt19937 random{seed};
    auto const below = [&random](unsigned end) { return static_cast<unsigned>(random() % end); };
    ADSBTracker tracker;
    reference::SearchedTrackNumbers searched;
    for (int i = 0; i < 5000; ++i) {
        auto const address = 1 + below(60);
        auto const known = searched.numberOf.find(address);
        auto const number = known != searched.numberOf.end() ? known->second : 0;
        auto const what = below(4);
        if (what == 0) {
            bool const killed = tracker.killTarget(number, address) != nullptr;
            ASSERT_EQ(killed, known != searched.numberOf.end()) << "seed " << seed << " step " << i;
            searched.numberOf.erase(address);
        } else if (what == 1) {
            auto const report = std::make_shared<ADSBTargetReport>();
            report->setLastUpdate(1);
            report->setIcaoAddress(address);
            report->setIcaoAddressValid(true);
            report->setTrackId(below(80));
            report->setTrackIdValid(below(4) != 0);
            if (known == searched.numberOf.end()) searched.next(); // a new target takes one first
            tracker.procTargetReport(report);
            searched.numberOf[address] = report->trackIdValid() ? report->trackId() : 0;
        } else if (what == 2 && i % 50 == 0) {
            ASSERT_EQ(tracker.getNextTrackId(), searched.next()) << "seed " << seed << " step " << i;
        } else {
            if (known == searched.numberOf.end()) {
                auto const expected = searched.next();
                searched.numberOf[address] = expected;
            }
            ASSERT_EQ(tracker.createTarget(address)->trackId(), searched.numberOf[address])
                << "seed " << seed << " step " << i;
        }
    }
}

TEST(ADSBTrackerKilling, SurvivesALogHandlerThatDropsTheSameTarget) {
    class Dropping : public LogHandler {
    public:
        void handle(Log::Level, std::string const&) override {
            if (!tracker || told++ > 0) return;
            tracker->killTarget(1, 0x4840D6);
        }
        ADSBTracker* tracker = nullptr;
        int told = 0;
    } handler;
    ADSBTracker tracker;
    ASSERT_TRUE(tracker.createTarget(0x4840D6));
    ASSERT_TRUE(tracker.createTarget(0x4840D7));
    handler.tracker = &tracker;
    Log::setLogHandler(&handler);
    Log::setShowLevel(Log::Debug);
    auto const killed = tracker.killTargets(1);
    Log::setLogHandler(nullptr);
    Log::setShowLevel(Log::Info);
    ASSERT_EQ(killed.size(), 2U);
    EXPECT_EQ(killed[0]->icaoAddr(), 0x4840D6U);
    EXPECT_EQ(killed[1]->icaoAddr(), 0x4840D7U);
    EXPECT_TRUE(tracker.allTargets().empty());
}

} // namespace
} // namespace quorvel::modes
