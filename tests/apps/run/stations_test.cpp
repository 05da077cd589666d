// SPDX-License-Identifier: MIT
#include "run/stations.h"

#include "run_support.h"

#include <gtest/gtest.h>

#include <string>

using namespace quorvel;
using namespace quorvel;
using namespace quorvel::run;
using namespace quorvel::run::test;

namespace {

struct Sources {
    modes::test::TemporaryFolder folder;
    Stations stations;

    explicit Sources(bool areMerged = false, SkyUse const& use = {}) : stations(use, areMerged) {}

    Source& add(std::string const& name) {
        auto& source = stations.add(name);
        source.recording = recording(folder.path("recording"), {});
        return source;
    }
};

void hear(Source& source, std::uint32_t address, airspace::TimeMs time) {
    auto const frame = identification(address, time);
    source.station.sky.take(frame);
    source.lastFrame = frame.time;
    source.present = frame.now;
}

/// A live source that says what it is made to say.
class Receiver : public net::LiveSource {
public:
    void start() override {}
    void stop() override {}
    std::string state() const override { return "connected"; }
    airspace::TimeMs now() const override { return kMayDay + 5'000; }
    airspace::TimeMs lastFrame() const override { return kMayDay; }
    outputs::Counters counters() const override {
        outputs::Counters counters;
        counters.reconnections = 3;
        counters.frames = 7;
        return counters;
    }
};

} // namespace

TEST(Stations, ASourceThatIsGivenTwiceHasTwoNames) {
    Sources sources;
    EXPECT_EQ(sources.add("a").name, "a");
    EXPECT_EQ(sources.add("a").name, "a (2)");
    EXPECT_EQ(sources.add("a").name, "a (3)");
    EXPECT_EQ(sources.add("b").name, "b");
}

TEST(Stations, EachSourceHasASkyOfItsOwnUnlessTheyAreMerged) {
    Sources apart;
    auto& one = apart.add("one");
    EXPECT_EQ(one.station.name, "") << "the only one needs no name";
    auto& two = apart.add("two");
    EXPECT_NE(&one.station, &two.station);
    EXPECT_EQ(one.station.name, "one");
    EXPECT_EQ(two.station.name, "two");
    Sources merged(true);
    EXPECT_EQ(&merged.add("one").station, &merged.add("two").station);
    EXPECT_EQ(merged.stations.all().front()->name, "");
}

TEST(Stations, ThePictureShowsAircraftBySourceAndCountsOfAll) {
    Sources sources;
    hear(sources.add("one"), 0x4B1234, kMayDay + 1'000);
    auto& two = sources.add("two");
    hear(two, 0x4B1234, kMayDay + 2'000);
    hear(two, 0x3C5678, kMayDay + 3'000);
    auto const picture = sources.stations.picture();
    EXPECT_EQ(picture.now, kMayDay + 3'000);
    ASSERT_EQ(picture.aircraft.size(), 3U);
    EXPECT_EQ(picture.aircraft[0].source, "one");
    EXPECT_EQ(picture.aircraft[1].source, "two");
    EXPECT_EQ(picture.aircraft[1].address, 0x3C5678U);
    EXPECT_EQ(picture.counters.tracked, 3U);
    ASSERT_EQ(picture.sources.size(), 2U);
    EXPECT_EQ(picture.sources[0].name, "one");
    EXPECT_EQ(picture.sources[0].state, "reading");
    EXPECT_EQ(picture.sources[0].now, kMayDay + 1'000);
    EXPECT_TRUE(picture.sources[0].timeKnown);
    EXPECT_EQ(picture.sources[1].counters.tracked, 2U);
    EXPECT_FALSE(picture.report(picture.aircraft[0])) << "no pages are wanted";
}

TEST(Stations, HaveReportsOfTheCoreWherePagesAreWanted) {
    SkyUse use;
    use.hasPages = true;
    Sources sources(false, use);
    hear(sources.add("one"), 0x4B1234, kMayDay);
    auto const picture = sources.stations.picture();
    ASSERT_EQ(picture.aircraft.size(), 1U);
    EXPECT_EQ(picture.aircraft[0].trackNumber, 0) << "values are by the standards all the same";
    ASSERT_TRUE(picture.report(picture.aircraft[0]));
    EXPECT_EQ(picture.report(picture.aircraft[0])->icaoAddress(), 0x4B1234U);
}

TEST(Stations, ShowAircraftWithWhatAListSaysOfThem) {
    Stations stations({}, false, files::AircraftList("4B1234,HB-ABC,A320,Swiss\nA00001,N77,B738\n3C5678,D-X"));
    modes::test::TemporaryFolder const folder;
    auto& source = stations.add("one");
    source.recording = recording(folder.path("recording"), {});
    for (std::uint32_t const address : {0x4B1234U, 0xA00001U, 0xA00002U}) hear(source, address, kMayDay);
    auto const aircraft = stations.picture().aircraft;
    ASSERT_EQ(aircraft.size(), 3U);
    EXPECT_EQ(aircraft[0].registration.value, "HB-ABC");
    EXPECT_EQ(aircraft[0].type, "A320");
    EXPECT_EQ(aircraft[0].operatorName, "Swiss");
    EXPECT_EQ(aircraft[1].registration.value, "N77") << "not N1, which the address tells";
    EXPECT_EQ(aircraft[2].registration.value, "N1A") << "where the list says nothing";
    EXPECT_EQ(aircraft[2].type, "");
}

TEST(Stations, ShowTheValuesOfTheLibraryIfAskedTo) {
    SkyUse use;
    use.values = Values::Library;
    Sources sources(false, use);
    hear(sources.add("one"), 0x4B1234, kMayDay);
    auto const picture = sources.stations.picture();
    ASSERT_EQ(picture.aircraft.size(), 1U);
    EXPECT_EQ(picture.aircraft[0].trackNumber, 1);
    EXPECT_EQ(picture.counters.tracked, 1U);
    EXPECT_TRUE(picture.report(picture.aircraft[0]));
    sources.stations.dropAll();
    EXPECT_TRUE(sources.stations.picture().aircraft.empty());
}

TEST(Stations, CountsOfMergedSourcesAreOfAllTogether) {
    Sources sources(true);
    hear(sources.add("one"), 0x4B1234, kMayDay + 1'000);
    hear(sources.add("two"), 0x4B1234, kMayDay + 2'000);
    auto const picture = sources.stations.picture();
    EXPECT_EQ(picture.aircraft.size(), 1U);
    EXPECT_EQ(picture.counters.tracked, 2U);
    EXPECT_EQ(picture.sources[0].counters.tracked, 0U);
}

TEST(Stations, ALiveSourceGivesItsOwnStateAndAllItsCounts) {
    Stations stations({}, false);
    auto& source = stations.add("tcp://receiver:30005");
    source.live = std::make_unique<Receiver>();
    EXPECT_TRUE(stations.hasLive());
    EXPECT_EQ(stations.now(), 0U) << "nothing was heard yet";
    hear(source, 0x4B1234, kMayDay);
    EXPECT_EQ(stations.now(), kMayDay + 5'000);
    auto const picture = stations.picture();
    EXPECT_EQ(picture.sources[0].state, "connected");
    EXPECT_EQ(picture.sources[0].counters.reconnections, 3U);
    EXPECT_EQ(picture.counters.reconnections, 3U);
    EXPECT_EQ(picture.counters.frames, 7U);
}

TEST(Stations, HaveEndedWhenAllSourcesHave) {
    Sources sources;
    auto& one = sources.add("one");
    auto& two = sources.add("two");
    one.hasEnded = true;
    EXPECT_FALSE(sources.stations.haveEnded());
    EXPECT_EQ(sources.stations.picture().sources[0].state, "ended");
    two.hasEnded = true;
    EXPECT_TRUE(sources.stations.haveEnded());
    EXPECT_FALSE(sources.stations.hasLive());
}

TEST(Stations, DropWhatIsSilentByTheTimeOfItsOwnSource) {
    Sources sources;
    auto& early = sources.add("early");
    auto& late = sources.add("late");
    sources.stations.setTimeout(30'000);
    hear(early, 0x4B1234, kMayDay);
    hear(late, 0x4B1234, kMayDay);
    hear(late, 0x3C5678, kMayDay + 31'000);
    sources.stations.dropSilent();
    EXPECT_EQ(early.station.sky.aircraft(0).size(), 1U);
    auto const left = late.station.sky.aircraft(0);
    ASSERT_EQ(left.size(), 1U);
    EXPECT_EQ(left[0].address, 0x3C5678U);
    sources.stations.dropAll();
    EXPECT_TRUE(sources.stations.picture().aircraft.empty());
}
