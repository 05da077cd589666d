// SPDX-License-Identifier: MIT
#include "outputs/aircraft_json.h"

#include "files/host_error.h"

#include "pictures.h"
#include "support/frames.h"
#include "support/temporary_folder.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>

#include <filesystem>

using namespace quorvel;
using namespace quorvel::outputs::test;
using modes::test::TemporaryFolder;
using outputs::AircraftJson;
using Json = nlohmann::ordered_json;

namespace {

class AircraftJsonFile : public testing::Test {
protected:
    std::string file() const { return _folder.path("aircraft.json"); }

    Json receiver() const { return Json::parse(content(_folder.path("receiver.json"))); }

    Json aircraft(std::vector<outputs::Aircraft> const& list) const {
        return Json::parse(outputs::aircraftDocument(pictureOf(list)))["aircraft"];
    }

    TemporaryFolder _folder;
};

} // namespace

TEST_F(AircraftJsonFile, HasTheFieldsThatMapsRead) {
    auto const list = aircraft({knownAircraft()});
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0].dump(),
        R"({"hex":"4840d6","flight":"KLM1023","squawk":"4032","emergency":"none","category":"A3","alert":0,"spi":0,)"
        R"("alt_baro":38000,"gs":451.3,"track":92.5,"baro_rate":-640,"lat":52.25,"lon":-3.9375,)"
        R"("seen_pos":2.5,"version":2,"nic":8,"nac_p":9,"sil":3,"mlat":[],"tisb":[],"messages":321,)"
        R"("seen":2.5,"rssi":-6.0})");
}

TEST_F(AircraftJsonFile, LeavesOutWhatIsNotValid) {
    EXPECT_EQ(aircraft({heardAircraft(0xABC, kNow)})[0].dump(),
        R"({"hex":"000abc","mlat":[],"tisb":[],"messages":1,"seen":0.0})");
}

TEST_F(AircraftJsonFile, LeavesOutTheSignalLevelThatAnEncodingDoesNotCarry) {
    auto unmeasured = knownAircraft();
    unmeasured.signalAmplitude.value = 0;
    EXPECT_FALSE(aircraft({unmeasured})[0].contains("rssi"));
    unmeasured.signalAmplitude.value = 1;
    EXPECT_EQ(aircraft({unmeasured})[0]["rssi"], -48.1);
}

TEST_F(AircraftJsonFile, SaysWhenItWasWrittenAndHowManyMessagesThereWere) {
    auto picture = pictureOf({});
    picture.counters.frames = 120;
    picture.counters.undecoded = 20;
    EXPECT_EQ(outputs::aircraftDocument(picture), "{\"now\":1714566896.789,\"messages\":100,\"aircraft\":[]}\n");
}

TEST_F(AircraftJsonFile, SaysWhenItsTimeIsOfNoCalendar) {
    auto picture = pictureOf({});
    picture.sources[0].timeKnown = false;
    auto const json = Json::parse(outputs::aircraftDocument(picture));
    EXPECT_FALSE(json.value("time_known", true));
    EXPECT_EQ(json["now"], 1714566896.789) << "which maps need all the same";
}

TEST_F(AircraftJsonFile, GivesTheAltitudeOfAnAircraftOnTheGroundAsGround) {
    auto taxiing = knownAircraft();
    taxiing.groundStatus.value = true;
    EXPECT_EQ(aircraft({taxiing})[0]["alt_baro"], "ground");
}

TEST_F(AircraftJsonFile, NamesEmergencies) {
    struct Case {
        unsigned int squawk;
        char const* name;
    };
    for (auto const& expected :
        {Case{07500, "unlawful"}, Case{07600, "nordo"}, Case{07700, "general"}, Case{07701, "none"}}) {
        auto one = knownAircraft();
        one.squawk.value = airspace::Squawk{static_cast<std::uint16_t>(expected.squawk)};
        EXPECT_EQ(aircraft({one})[0]["emergency"], expected.name);
    }
}

TEST_F(AircraftJsonFile, LeavesOutPositionsOlderThanAMinuteAndAircraftNotHeardForFive) {
    auto const list = aircraft(
        {knownAircraft(60'001), heardAircraft(0x4840D7, kNow - 300'000), heardAircraft(0x4840D8, kNow - 300'001)});
    ASSERT_EQ(list.size(), 2U);
    EXPECT_FALSE(list[0].contains("lat"));
    EXPECT_EQ(list[1]["hex"], "4840d7");
}

TEST_F(AircraftJsonFile, LeavesOutAltitudeAndVelocityOlderThanAMinute) {
    auto const old = aircraft({knownAircraft(60'001)})[0];
    for (auto const* key : {"alt_baro", "gs", "track", "baro_rate", "lat", "seen_pos"}) {
        EXPECT_FALSE(old.contains(key)) << key;
    }
    EXPECT_EQ(old["flight"], "KLM1023");
    EXPECT_EQ(aircraft({knownAircraft(60'000)})[0]["alt_baro"], 38000);
}

TEST_F(AircraftJsonFile, HasOneEntryForAnAircraftThatSeveralSourcesHear) {
    auto a = knownAircraft(100), b = knownAircraft(5'000);
    a.source = "a", b.source = "b";
    b.messages = 5;
    auto const list = aircraft({a, b});
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0]["messages"], 321);
}

TEST_F(AircraftJsonFile, NamesTheEmitterCategoryWhereItsSetIsKnown) {
    auto one = knownAircraft();
    EXPECT_EQ(aircraft({one})[0]["category"], "A3");
    one.emitterCategory.value = airspace::EmitterCategory{'D', 0};
    EXPECT_EQ(aircraft({one})[0]["category"], "D0");
    one.emitterCategory.value = airspace::EmitterCategory{0, 3};
    EXPECT_FALSE(aircraft({one})[0].contains("category"));
}

TEST_F(AircraftJsonFile, IsReplacedWithEachPicture) {
    AircraftJson output(file(), {});
    output.picture(pictureOf({knownAircraft()}));
    EXPECT_EQ(Json::parse(content(file()))["aircraft"].size(), 1U);
    output.finish(pictureOf({}));
    EXPECT_EQ(Json::parse(content(file()))["aircraft"].size(), 0U);
}

TEST_F(AircraftJsonFile, HasTheReceiverBesideIt) {
    AircraftJson const nowhere(file(), {});
    EXPECT_EQ(receiver()["refresh"], 1000);
    EXPECT_EQ(receiver()["history"], 0);
    EXPECT_FALSE(receiver().contains("lat"));
    AircraftJson const placed(file(), airspace::Place{52.5, 13.25});
    EXPECT_EQ(receiver()["lat"], 52.5);
    EXPECT_EQ(receiver()["lon"], 13.25);
}

TEST_F(AircraftJsonFile, SaysSoWhenItCannotBeWritten) {
    auto const target = _folder.write("file", "") + "/aircraft.json";
    try {
        AircraftJson const output(target, {});
        ADD_FAILURE() << "no word";
    } catch (files::HostError const& error) {
        EXPECT_THAT(error.what(), testing::HasSubstr("write " + target + ": "));
    }
    std::filesystem::create_directory(_folder.path("receiver.json")); // a file can be made here, but not that one
    try {
        AircraftJson const output(file(), {});
        ADD_FAILURE() << "no word";
    } catch (files::HostError const& error) {
        EXPECT_THAT(error.what(), testing::HasSubstr("write " + file() + ": "));
    }
}
