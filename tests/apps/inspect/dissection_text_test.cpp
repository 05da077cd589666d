// SPDX-License-Identifier: MIT
#include "inspect/dissection_text.h"

#include "dissected.h"
#include "support/captured_log.h"
#include "support/frames.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace quorvel::inspect {

namespace {

using namespace modes::test;
using ::testing::HasSubstr;
using ::testing::Not;

nlohmann::json jsonOf(std::string const& frame) { return nlohmann::json::parse(dissectionJson(dissected(frame))); }

} // namespace

TEST(DissectionText, TellsOfADecodedFrame) {
    EXPECT_EQ(dissectionText(dissected(shortFrame(11, capability(5) | 0x4CA2D4, 0))),
        "5D4CA2D468FE2F\n"
        "  Format            DF11, all-call reply\n"
        "  Confidence        none: nothing confirms its address\n"
        "  Parity            68FE2F received, 68FE2F calculated, remainder 000000 (right, of interrogator "
        "0)\n"
        "  Address           4CA2D4\n"
        "  Reply             CA: 5; AA: 4CA2D4; PI: 68FE2F\n"
        "\n"
        "   Bits  Width  Field  Name                            Raw     Value\n"
        "    1-5      5  DF     Downlink format                 0B      11: all-call reply\n"
        "    6-8      3  CA     Capability                      5       5: level 2 or above, airborne\n"
        "   9-32     24  AA     Address announced               4CA2D4  4CA2D4\n"
        "  33-56     24  PI     Parity/interrogator identifier  68FE2F  68FE2F: interrogator identifier 0\n");
}

TEST(DissectionText, TellsVersionsApart) {
    auto const text = dissectionText(dissected(fromHex("8D40621D58C382D690C8AC2863A7")));
    EXPECT_THAT(
        text, HasSubstr("  Versions 0, 1, 2  TC=POS_AIR, AT=BARO, ALT=38050, CPR=EVEN, LAT=93000, LON=51372\n"));
    EXPECT_THAT(text, HasSubstr("NIC_SUPP_B  NIC supplement B      0      0        2\n"));
}

TEST(DissectionText, SaysWhatIsNotDecoded) {
    auto const text = dissectionText(dissected(squitter(0x4840D6, payload(25))));
    EXPECT_THAT(text, HasSubstr("  Payload           type code 25, RESERVED: Reserved\n"
                                "  Versions 0, 1, 2  not decoded: no such message, or it is not valid\n"));
}

TEST(DissectionText, ShowsRepairs) {
    auto const intact = squitter(0x4840D6, identification("KLM1023"));
    EXPECT_THAT(dissectionText(dissected(withBitsInverted(intact, {40}))),
        HasSubstr("  Repaired          bit 41: 8D4840D6202CC371C32CE0576098\n"));
}

TEST(DissectionText, ShowsPositionsInDegrees) {
    Dissection dissection;
    dissection.position = airspace::Place{-0.25, 179.999999};
    EXPECT_THAT(dissectionText(dissection), HasSubstr("-0.25000, 180.00000, of this frame and one before it"));
}

TEST(DissectionText, PassesNoControlCharactersOn) {
    auto const text = dissectionText(dissected(squitter(0x4840D6, payload(23, 1))));
    EXPECT_EQ(text.find_first_of("\x01\x1B\x7F"), std::string::npos);
}

TEST(DissectionJson, IsOneLineWithEveryFieldOfTheFrame) {
    auto const line = dissectionJson(dissected(fromHex("8D40621D58C382D690C8AC2863A7")));
    EXPECT_EQ(line.find('\n'), line.size() - 1);
    auto const json = nlohmann::json::parse(line);
    EXPECT_EQ(json["format"], 17);
    EXPECT_EQ(json["confidence"], "high");
    EXPECT_EQ(json["address"], "40621D");
    EXPECT_EQ(json["parity"]["remainder"], "000000");
    EXPECT_EQ(json["fields"][2]["name"], "AA");
    EXPECT_EQ(json["fields"][2]["firstBit"], 9);
    EXPECT_EQ(json["payload"]["readings"][0]["versions"], nlohmann::json({0, 1}));
    EXPECT_EQ(json["payload"]["readings"][0]["fields"][0]["name"], "TYPE");
    EXPECT_TRUE(json["position"].is_null());
}

TEST(DissectionJson, HasNullForWhatAFrameDoesNotHave) {
    auto const json = jsonOf(fromHex("7700"));
    for (auto const* key : {"format", "confidence", "parity", "address", "payload", "position", "repairedFrame"})
        EXPECT_TRUE(json.contains(key) && json[key].is_null()) << key;
    EXPECT_EQ(json["problem"], "Mode A/C replies are not decoded");
}

TEST(DissectionJson, HasRepairsAndPositions) {
    auto const json = jsonOf(withBitsInverted(squitter(0x4840D6, identification("KLM1023")), {40, 80}));
    EXPECT_EQ(json["repairedBits"], nlohmann::json({41, 81}));
    EXPECT_EQ(json["repairedFrame"], "8D4840D6202CC371C32CE0576098");

    CapturedLog const log;
    Dissector dissector(kAllVersions);
    dissector.dissect(fromHex("8D40621D58C382D690C8AC2863A7"));
    auto const second = dissector.dissect(fromHex("8D40621D58C386435CC412692AD6"));
    EXPECT_NEAR(nlohmann::json::parse(dissectionJson(second))["position"]["latitude"].get<double>(), 52.26578, 1e-5);
}

TEST(DissectionJson, IsTextForAnyFrame) {
    for (unsigned byte = 0; byte < 256; ++byte) {
        auto const frame = longFrame(17, capability(5) | 0x4840D6, std::string(7, static_cast<char>(byte)), 0);
        EXPECT_NO_THROW(jsonOf(frame)) << byte;
    }
}

} // namespace quorvel::inspect
