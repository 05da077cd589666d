// SPDX-License-Identifier: MIT
#include "outputs/json_lines.h"

#include "pictures.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

using namespace quorvel;
using namespace quorvel::outputs::test;
using Json = nlohmann::ordered_json;

namespace {

Json snapshot(outputs::Aircraft const& aircraft) {
    return Json::parse(outputs::jsonLine(pictureOf({aircraft}), aircraft));
}

std::vector<std::string> keys(Json const& object) {
    std::vector<std::string> names;
    for (auto const& item : object.items()) names.push_back(item.key());
    return names;
}

} // namespace

TEST(JsonLine, ShowsEachItemUnderTheNameOfItsGetter) {
    auto const json = snapshot(knownAircraft());
    EXPECT_EQ(json["trackId"], 7);
    EXPECT_EQ(json["icaoAddress"], 0x4840D6);
    EXPECT_EQ(json["icaoAddressString"], "4840D6");
    EXPECT_EQ(json["callsign"], "KLM1023 ");
    EXPECT_EQ(json["emitterCategory"], 3);
    EXPECT_EQ(json["squawk"], 04032);
    EXPECT_EQ(json["squawkString"], "4032");
    EXPECT_EQ(json["latitude"], 52.25);
    EXPECT_EQ(json["longitude"], -3.9375);
    EXPECT_EQ(json["signalAmplitude"], 128);
    EXPECT_EQ(json["altitudeBaro"], 38000);
    EXPECT_EQ(json["groundSpeed"], 451.25);
    EXPECT_EQ(json["track"], 92.5);
    EXPECT_EQ(json["squawkSource"], "Mode S");
    EXPECT_EQ(json["address"], "4840D6");
    EXPECT_EQ(json["formatVersion"], 2);
    EXPECT_EQ(json["verticalRateBaro"], -640);
    EXPECT_EQ(json["groundStatus"], false);
    EXPECT_EQ(json["spiStatus"], false);
    EXPECT_EQ(json["alertStatus"], false);
    EXPECT_EQ(json["mopsVersion"], 2);
    EXPECT_EQ(json["mopsVersionConfirmed"], true);
    EXPECT_EQ(json["nic"], 8);
    EXPECT_EQ(json["nacp"], 9);
    EXPECT_EQ(json["sil"], 3);
    EXPECT_EQ(json["messages"], 321);
    EXPECT_EQ(json["positionsRefused"], 2);
}

TEST(JsonLine, ShowsTimesAsTextInMillisecondsAndAsAges) {
    auto const json = snapshot(knownAircraft(2'500));
    EXPECT_EQ(json["now"], "2024-05-01T12:34:56.789Z");
    EXPECT_EQ(json["nowMs"], kNow);
    EXPECT_EQ(json["lastUpdate"], "2024-05-01T12:34:54.289Z");
    EXPECT_EQ(json["lastUpdateMs"], kNow - 2'500);
    EXPECT_EQ(json["age"], 2.5);
    EXPECT_EQ(json["callsignLastUpdate"], "2024-05-01T12:34:54.289Z");
    EXPECT_EQ(json["callsignAge"], 2.5);
    EXPECT_EQ(json["callsignLastChange"], "2024-05-01T12:33:54.289Z");
    EXPECT_EQ(json["callsignLastChangeMs"], kNow - 62'500);
    EXPECT_EQ(json["positionAge"], 2.5);
}

TEST(JsonLine, ShowsNullForWhatIsNotValid) {
    auto const json = snapshot(heardAircraft(0xABC, kNow));
    for (auto const* key : {"trackId", "source", "callsign", "emitterCategory", "squawk", "squawkString", "latitude",
             "longitude", "signalAmplitude", "altitudeBaro", "groundSpeed", "track", "verticalRateBaro", "groundStatus",
             "spiStatus", "alertStatus", "nucp", "nucr", "nic", "nicSuppA", "nicSuppB", "nicSuppC", "pic", "nacp",
             "sil", "mach", "advisory"}) {
        ASSERT_TRUE(json.contains(key)) << key;
        EXPECT_TRUE(json[key].is_null()) << key;
    }
    EXPECT_EQ(json["icaoAddressString"], "000ABC");
    EXPECT_FALSE(json.contains("machLastUpdate")) << "what was never reported has no times";
    EXPECT_FALSE(json.contains("machSource"));
}

TEST(JsonLine, TellsValuesOfTheStandardsInWordsWhereTheyAreNoNumbers) {
    auto aircraft = knownAircraft();
    aircraft.emergency.value = airspace::EmergencyState::UnlawfulInterference;
    aircraft.silBasis.value = airspace::SilBasis::Sample;
    aircraft.selectedModes.value = airspace::SelectedModes{true, {}, true, {}, {}, {}};
    airspace::ResolutionAdvisory advisory;
    advisory.sameSense = {true, false, false, false, false, true};
    advisory.isTerminated = true;
    aircraft.advisory.value = advisory;
    auto const json = snapshot(aircraft);
    EXPECT_EQ(json["emergency"], "unlawful");
    EXPECT_EQ(json["silBasis"], "persample");
    EXPECT_EQ(json["selectedModes"].dump(), R"(["autopilot","althold"])");
    EXPECT_EQ(json["advisory"], "climb, corrective, ended");
}

TEST(JsonLine, HasNoIcaoAddressOfAnAircraftThatHasNone) {
    auto aircraft = heardAircraft(0xABC, kNow);
    aircraft.addressKind = airspace::AddressKind::NonIcao;
    auto const json = snapshot(aircraft);
    EXPECT_EQ(json["address"], "~000ABC");
    EXPECT_TRUE(json["icaoAddress"].is_null());
}

TEST(JsonLine, ShowsAnUnknownVersionAsNull) {
    auto aircraft = knownAircraft();
    aircraft.mopsVersion.value.reset();
    EXPECT_TRUE(snapshot(aircraft)["mopsVersion"].is_null());
}

TEST(JsonLine, HasAllValuesInTheSameOrderWhateverIsKnown) {
    auto const known = keys(snapshot(knownAircraft()));
    auto const unknown = keys(snapshot(heardAircraft(1, kNow)));
    std::vector<std::string> inBoth;
    std::ranges::copy_if(
        known, std::back_inserter(inBoth), [&](auto const& key) { return std::ranges::count(unknown, key) > 0; });
    EXPECT_EQ(inBoth, unknown);
    EXPECT_EQ(known.front(), "formatVersion");
}

TEST(JsonLine, GivesNoNegativeAges) { EXPECT_EQ(snapshot(heardAircraft(1, kNow + 5'000))["age"], 0); }

TEST(JsonLine, SaysWhetherTheTimesAreOfAnyCalendar) {
    auto aircraft = knownAircraft();
    auto picture = pictureOf({aircraft});
    EXPECT_EQ(Json::parse(outputs::jsonLine(picture, aircraft))["timeKnown"], true);
    picture.sources[0].timeKnown = false;
    EXPECT_EQ(Json::parse(outputs::jsonLine(picture, aircraft))["timeKnown"], false);
}

TEST(JsonLine, IsOneLineOfUtf8WhateverCameOverTheAir) {
    auto aircraft = knownAircraft();
    aircraft.source = "Z\xFCrich";
    aircraft.callsign.value = "\"\\\n\x01\xFF,{}";
    auto const line = outputs::jsonLine(pictureOf({aircraft}), aircraft);
    EXPECT_EQ(line.find('\n'), line.size() - 1);
    EXPECT_EQ(Json::parse(line)["callsign"], "\"\\\n\x01\xEF\xBF\xBD,{}");
    EXPECT_EQ(Json::parse(line)["source"], "Z\xEF\xBF\xBDrich");
}

TEST(JsonLines, ShowAircraftThatWereHeardSinceThePictureBefore) {
    Written written;
    outputs::JsonLines lines(sinkTo(written));
    auto a = heardAircraft(1, kNow - 10), b = heardAircraft(2, kNow - 10);
    lines.picture(pictureOf({a, b}));
    EXPECT_EQ(written.items.size(), 2U);
    b.heard = kNow;
    lines.picture(pictureOf({a, b}));
    ASSERT_EQ(written.items.size(), 3U);
    EXPECT_EQ(Json::parse(written.items[2])["icaoAddress"], 2);
    EXPECT_EQ(written.flushes, 2);
}

TEST(JsonLines, ShowRepliesInTheSameMillisecondToo) {
    Written written;
    outputs::JsonLines lines(sinkTo(written));
    auto aircraft = heardAircraft(1, kNow);
    lines.picture(pictureOf({aircraft}));
    ++aircraft.messages;
    lines.picture(pictureOf({aircraft}));
    EXPECT_EQ(written.items.size(), 2U);
}

TEST(JsonLines, SeparateTheSameAircraftOfTwoSources) {
    Written written;
    outputs::JsonLines lines(sinkTo(written));
    auto a = heardAircraft(1, kNow - 10), b = heardAircraft(1, kNow);
    a.source = "a", b.source = "b";
    lines.picture(pictureOf({a, b}));
    lines.picture(pictureOf({a, b}));
    ASSERT_EQ(written.items.size(), 2U);
    EXPECT_EQ(Json::parse(written.items[1])["source"], "b");
}

TEST(JsonLines, ShowAnAircraftThatWasGoneAgain) {
    Written written;
    outputs::JsonLines lines(sinkTo(written));
    auto const picture = pictureOf({heardAircraft(1, kNow)});
    lines.picture(picture);
    lines.picture(pictureOf({}));
    lines.picture(picture);
    EXPECT_EQ(written.items.size(), 2U);
}
