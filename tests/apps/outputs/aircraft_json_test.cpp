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
        R"({"hex":"4840d6","type":"adsb_icao","flight":"KLM1023","squawk":"4032","emergency":"none","category":"A3","alert":0,"spi":0,)"
        R"("alt_baro":38000,"gs":451.3,"track":92.5,"baro_rate":-640,"lat":52.25,"lon":-3.9375,)"
        R"("nic":8,"seen_pos":2.5,"version":2,"nac_p":9,"sil":3,"mlat":[],"tisb":[],"messages":321,)"
        R"("seen":2.5,"rssi":-6.0})");
}

TEST_F(AircraftJsonFile, LeavesOutWhatIsNotValid) {
    EXPECT_EQ(aircraft({heardAircraft(0xABC, kNow)})[0].dump(),
        R"({"hex":"000abc","type":"mode_s","mlat":[],"tisb":[],"messages":1,"seen":0.0})");
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
    EXPECT_EQ(outputs::aircraftDocument(picture),
        "{\"now\":1714566896.789,\"format_version\":2,\"messages\":100,\"aircraft\":[]}\n");
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

TEST_F(AircraftJsonFile, HasTheFieldsThatMapsReadOfOtherMessagesToo) {
    auto one = knownAircraft();
    auto const AdsB = airspace::Source::AdsB;
    auto const CommB = airspace::Source::CommB;
    auto const Derived = airspace::Source::Derived;
    one.emergency = {airspace::EmergencyState::MinimumFuel, AdsB, kNow, 0};
    one.registration = {"N12345", Derived, kNow, 0};
    one.type = "B738";
    one.operatorName = "Example Air";
    one.altitudeGnss = {38'725, AdsB, kNow, 0};
    one.verticalRateGnss = {-704, AdsB, kNow, 0};
    one.indicatedAirspeed = {271, CommB, kNow, 0};
    one.trueAirspeed = {462.0, CommB, kNow, 0};
    one.mach = {0.784, CommB, kNow, 0};
    one.windDirection = {270.4, Derived, kNow, 0};
    one.windSpeed = {32.6, Derived, kNow, 0};
    one.temperature = {-52.3, Derived, kNow, 0};
    one.totalTemperature = {-25.4, Derived, kNow, 0};
    one.trackRate = {-0.031, CommB, kNow, 0};
    one.roll = {-1.055, CommB, kNow, 0};
    one.magneticHeading = {88.246, CommB, kNow, 0};
    one.trueHeading = {90.0, AdsB, kNow, 0};
    one.pressureSetting = {1013.25, AdsB, kNow, 0};
    one.selectedAltitude = {38'016, AdsB, kNow, 0};
    one.selectedAltitudeManagement = {32'000, CommB, kNow, 0};
    one.selectedHeading = {88.59, AdsB, kNow, 0};
    one.selectedModes = {airspace::SelectedModes{true, {}, false, {}, {}, true}, AdsB, kNow, 0};
    one.radius = {185.2, AdsB, kNow, 0};
    one.distance = {31.7462, Derived, kNow, 0};
    one.bearing = {267.24, Derived, kNow, 0};
    one.nicBaro.value = true;
    one.nacv.value = 2;
    one.silBasis.value = airspace::SilBasis::Hour;
    one.gva.value = 2;
    one.sda.value = 3;
    auto const json = aircraft({one})[0];
    auto const expected = Json::parse(
        R"({"emergency": "minfuel", "r": "N12345", "t": "B738", "ownOp": "Example Air", "alt_geom": 38725, "geom_rate": -704,
        "ias": 271, "tas": 462, "mach": 0.784, "wd": 270, "ws": 33, "oat": -52, "tat": -25, "track_rate": -0.03,
        "roll": -1.06, "mag_heading": 88.25, "true_heading": 90.0, "nav_qnh": 1013.3, "nav_altitude_mcp": 38016,
        "nav_altitude_fms": 32000, "nav_heading": 88.59, "nav_modes": ["autopilot", "tcas"], "rc": 185,
        "r_dst": 31.746, "r_dir": 267.2, "nic_baro": 1, "nac_v": 2, "sil_type": "perhour", "gva": 2, "sda": 3})");
    for (auto const& [key, value] : expected.items()) EXPECT_EQ(json[key], value) << key;
}

TEST_F(AircraftJsonFile, SaysOfWhatKindAnAircraftIsByAddressAndBestSource) {
    using airspace::AddressKind;
    using airspace::Source;
    struct Case {
        AddressKind kind;
        Source source;
        char const* type;
    };
    Case const cases[] = {{AddressKind::Icao, Source::AdsB, "adsb_icao"},
        {AddressKind::Icao, Source::AdsR, "adsr_icao"}, {AddressKind::Icao, Source::TisB, "tisb_icao"},
        {AddressKind::Icao, Source::ModeS, "mode_s"}, {AddressKind::NonIcao, Source::AdsB, "adsb_other"},
        {AddressKind::NonIcao, Source::AdsR, "adsr_other"}, {AddressKind::TrackFile, Source::TisB, "tisb_trackfile"},
        {AddressKind::TisB, Source::TisB, "tisb_other"}};
    for (auto const& each : cases) {
        auto one = heardAircraft(0xABC, kNow);
        one.addressKind = each.kind;
        one.groundSpeed = {120.0, each.source, kNow, 0};
        one.altitudeBaro = {5'000, Source::Derived, kNow, 0};
        auto const json = aircraft({one})[0];
        EXPECT_EQ(json["type"], each.type);
        EXPECT_EQ(json["hex"], each.kind == AddressKind::Icao ? "000abc" : "~000abc");
        EXPECT_EQ(json["tisb"], each.source == Source::TisB ? Json({"gs"}) : Json::array());
    }
}

TEST_F(AircraftJsonFile, KeepsAircraftOfOneNumberAndOtherKindsOfAddressApart) {
    auto one = heardAircraft(0xABC, kNow), other = one;
    other.addressKind = airspace::AddressKind::TrackFile;
    EXPECT_EQ(aircraft({one, other}).size(), 2U);
}

TEST_F(AircraftJsonFile, LetsNoOldEmergencyStateHideASquawk) {
    auto one = knownAircraft();
    one.squawk.value = airspace::Squawk{07700};
    one.emergency = {airspace::EmergencyState::None, airspace::Source::AdsB, kNow, 0};
    EXPECT_EQ(aircraft({one})[0]["emergency"], "general");
    one.emergency = {airspace::EmergencyState::MinimumFuel, airspace::Source::AdsB, kNow, 0};
    EXPECT_EQ(aircraft({one})[0]["emergency"], "minfuel");
    one.emergency.updated = kNow - 60'001;
    EXPECT_EQ(aircraft({one})[0]["emergency"], "general");
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
