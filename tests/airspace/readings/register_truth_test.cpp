// SPDX-License-Identifier: MIT
#include "airspace/readings/named_values.h"
#include "airspace/readings/single_case.h"
#include "support/bytes.h"

#include <airspace/register_choice.h>
#include <airspace/register_fields.h>

#include <gtest/gtest.h>

#include <map>
#include <set>

using namespace quorvel::airspace;
using namespace quorvel::airspace::test;
using quorvel::modes::test::fromHex;

namespace {

std::string messageOf(std::string const& frame) { return fromHex(frame).substr(4, 7); }

std::set<std::string> const kHeader{
    "i", "hex", "df", "icao", "flight_status", "downlink_request", "utility_message", "altitude", "squawk"};

Json withoutHeader(Json frame) {
    for (auto const& name : kHeader) frame.erase(name);
    return frame;
}

// Every value that one side has and the other has not or has otherwise.
std::string differences(Json const& values, Json const& expected) {
    std::string found;
    for (auto const& [name, value] : expected.items()) {
        if (!values.contains(name) || !isAsExpected(values[name], value)) found += name + " ";
    }
    for (auto const& [name, value] : values.items()) {
        if (!expected.contains(name)) found += name + " (too much) ";
    }
    return found;
}

} // namespace

TEST(RegisterTruth, EveryRecordedReplyFitsAndReadsAsTheStandardsSay) {
    auto const files = truthFiles(".fields.jsonl.gz");
    SKIP_WITHOUT(files);
    std::size_t replies = 0;
    std::size_t values = 0;
    for (auto const& file : files) {
        forEachLine(file, [&](std::string_view line) {
            if (line.find(R"("df":20)") == line.npos && line.find(R"("df":21)") == line.npos) return;
            auto const frame = Json::parse(line);
            auto const expected = withoutHeader(frame);
            auto const hex = frame["hex"].get<std::string>();
            NamedValues read;
            visitFittingRegisters(read, messageOf(hex));
            ++replies;
            values += expected.size();
            EXPECT_EQ(differences(read.values, expected), "") << file << " " << hex << " " << read.values.dump();
        });
    }
    EXPECT_GT(replies, 0U);
    RecordProperty("replies", std::to_string(replies));
    RecordProperty("values", std::to_string(values));
}

TEST(RegisterTruth, TheChoiceByAltitudeAloneIsNeverSureOfAnotherRegister) {
    auto const files = truthFiles(".fields.jsonl.gz");
    SKIP_WITHOUT(files);
    std::size_t replies = 0;
    std::size_t sure = 0;
    for (auto const& file : files) {
        forEachLine(file, [&](std::string_view line) {
            if (line.find(R"("df":20)") == line.npos || line.find(R"("bds":)") == line.npos) return;
            auto const frame = Json::parse(line);
            KnownState known;
            if (frame.contains("altitude")) known.altitudeFt = frame["altitude"].get<int>();
            auto const choice = chooseRegister(messageOf(frame["hex"]), known);
            ++replies;
            if (choice.isUnsure) return;
            ++sure;
            EXPECT_EQ(nameOf(*choice.best).text(), frame["bds"].get<std::string>()) << frame["hex"];
        });
    }
    EXPECT_GE(static_cast<double>(sure), 0.985 * static_cast<double>(replies));
}

TEST(RegisterTruth, EveryGoldenReplyReadsAsExpected) {
    auto const files = truthFiles("golden.jsonl");
    SKIP_WITHOUT(files);
    std::set<std::string> const header{"bds", "df", "altitude", "vertical_status", "sensitivity_level", "subtype"};
    std::size_t cases = 0;
    forEachLine(files.front(), [&](std::string_view line) {
        auto const one = Json::parse(line);
        auto const kind = one["kind"].get<std::string>();
        bool const isAdvisory = kind == "DF16 RA" || kind == "6,1/2";
        if (!one.contains("given") && !isAdvisory) return;
        auto const message = messageOf(one["hex"][0].get<std::string>());
        NamedValues read;
        if (isAdvisory)
            visitFields(read, readResolutionAdvisory(message));
        else
            visitFields(read, readRegister(message, registerNamed(one["given"]["bds"])));
        ++cases;
        auto const tolerances = one.value("tol", Json::object());
        for (auto const& [name, value] : one["expect"].items()) {
            if (header.count(name) != 0) continue;
            if (value.is_null()) {
                EXPECT_FALSE(read.values.contains(name)) << one["id"] << " " << name;
                continue;
            }
            EXPECT_TRUE(isAsExpected(read.values.value(name, Json()), value, tolerances.value(name, 1e-6)))
                << one["id"] << " " << name << " " << value << " " << read.values.dump();
        }
        if (one["expect"].contains("bds") && !isAdvisory) {
            EXPECT_TRUE(fittingRegisters(message).contains(registerNamed(one["expect"]["bds"]))) << one["id"];
        }
    });
    EXPECT_GT(cases, 50U);
}

TEST(RegisterTruth, AnAmbiguousGoldenReplyNamesItsCandidates) {
    auto const files = truthFiles("golden.jsonl");
    SKIP_WITHOUT(files);
    forEachLine(files.front(), [](std::string_view line) {
        auto const one = Json::parse(line);
        if (one["kind"] != "Comm-B ambiguous") return;
        NamedValues read;
        visitFittingRegisters(read, messageOf(one["hex"][0].get<std::string>()));
        EXPECT_EQ(read.values["bds_candidates"], one["expect"]["bds_candidates"]) << one["id"];
    });
}
