// SPDX-License-Identifier: MIT
#include "airspace/readings/named_values.h"
#include "airspace/readings/single_case.h"

#include <airspace/integrity.h>
#include <airspace/message_fields.h>

#include <gtest/gtest.h>

#include <map>
#include <set>

using namespace quorvel::airspace;
using namespace quorvel::airspace::test;
using quorvel::modes::test::fromHex;

namespace {

template <class Value> void put(Json& values, char const* name, std::optional<Value> const& value) {
    if (value) values[name] = *value;
}

NicSupplements supplementsOf(ExtendedSquitter const& squitter, Json const& given) {
    auto const* const airborne = std::get_if<AirbornePosition>(&squitter.content);
    return {given.value("nic_supplement_a", 0) != 0, airborne != nullptr && airborne->nicSupplementB,
        given.value("nic_supplement_c", 0) != 0};
}

void addQuality(Json& values, OperationalStatus const& status) {
    if (status.nacP) {
        auto const accuracy = accuracyOfNacP(*status.nacP, status.version);
        put(values, "position_accuracy", accuracy.horizontal);
        put(values, "height_accuracy", accuracy.vertical);
    }
    if (status.gva) put(values, "geometric_accuracy", accuracyOfGva(*status.gva));
    if (status.sil) put(values, "sil_probability", sourceIntegrity(*status.sil, status.version).probability);
    if (status.sda) put(values, "sda_probability", faultProbabilityOfSda(*status.sda));
    if (auto const size = status.lengthWidth ? sizeOf(*status.lengthWidth, status.version) : std::nullopt) {
        values["length"] = size->lengthMetres;
        values["width"] = size->widthMetres;
    }
    if (status.antennaOffset) {
        auto const offset = antennaOffsetOf(*status.antennaOffset);
        put(values, "antenna_right", offset.rightMetres);
        put(values, "antenna_aft", offset.aftMetres);
    }
}

// What codes of a squitter stand for, by what the reader is told.
void addQuality(Json& values, ExtendedSquitter const& squitter, Json const& given) {
    if (auto const* const status = std::get_if<OperationalStatus>(&squitter.content)) addQuality(values, *status);
    if (!given.contains("version")) return;
    auto const version = given["version"].get<std::uint8_t>();
    auto const integrity = navigationIntegrity(*squitter.typeCode, version, supplementsOf(squitter, given));
    put(values, "nic", integrity.nic);
    put(values, "rc", integrity.radiusMetres);
    if (auto const* const velocity = std::get_if<AirborneVelocity>(&squitter.content)) {
        put(values, "velocity_accuracy", accuracyOfNacV(velocity->nacV, version).horizontal);
    }
}

Json valuesOf(Json const& one) {
    NamedValues values;
    auto const given = one.value("given", Json::object());
    auto const frame = fromHex(one["hex"].back().get<std::string>());
    if (isOfPosition(one)) {
        if (auto const place = placeOf(one))
            values.values = {{"latitude", place->latitude}, {"longitude", place->longitude}};
    } else if (given.contains("bds")) {
        visitFields(values, readRegister(frame.substr(4, 7), registerNamed(given["bds"])));
    } else {
        Reading how;
        if (given.contains("version")) how.version = given["version"].get<std::uint8_t>();
        auto const message = read(frame, how);
        visitFields(values, message);
        if (auto const* const squitter = std::get_if<ExtendedSquitter>(&message)) {
            addQuality(values.values, *squitter, given);
        }
    }
    return values.values;
}

// The values that are not as expected; null is no value.
std::string differences(Json const& one, Json const& values) {
    std::string found;
    auto const tolerances = one.value("tol", Json::object());
    for (auto const& [name, value] : one["expect"].items()) {
        bool const isRight =
            value.is_null() ? !values.contains(name)
                            : values.contains(name) && isAsExpected(values[name], value, tolerances.value(name, 1e-6));
        if (!isRight) found += name + " " + value.dump() + " ";
    }
    return found;
}

} // namespace

TEST(Conformance, EveryCaseOfTheInstalledSetReadsAsExpected) {
    std::set<std::string> ids;
    std::size_t values = 0;
    forEachLine(TREVALLO_CONFORMANCE, [&](std::string_view line) {
        auto const one = Json::parse(line);
        ids.insert(one["id"].get<std::string>());
        values += one["expect"].size();
        auto const read = valuesOf(one);
        EXPECT_EQ(differences(one, read), "") << line << " " << read.dump();
    });
    EXPECT_GT(ids.size(), 18'000U);
    EXPECT_GT(values, 50'000U);
}

TEST(Conformance, TheSetHasEveryCodeThatCanBeSent) {
    std::map<std::string, std::set<std::string>> frames;
    forEachLine(TREVALLO_CONFORMANCE, [&](std::string_view line) {
        auto const one = Json::parse(line);
        frames[one["kind"].get<std::string>()].insert(one["hex"].back().get<std::string>());
    });
    EXPECT_EQ(frames["altitude Gillham"].size(), 2048U);
    EXPECT_EQ(frames["altitude 25 ft"].size(), 2048U);
    EXPECT_EQ(frames["squawk"].size(), 4096U);
    EXPECT_EQ(frames["0,6 movement"].size(), 128U);
    EXPECT_EQ(frames["0,9 height difference"].size(), 256U);
    EXPECT_EQ(frames["interrogator"].size(), 84U);
    for (auto const* const kind : {"0,9/1", "0,9/2", "0,9/3", "0,9/4", "6,1/1", "6,1/2", "6,2/0", "6,2/1", "6,5/0",
             "6,5/1", "1,0", "1,7", "2,0", "2,1", "3,0", "4,0", "4,4", "4,5", "5,0", "5,3", "6,0"}) {
        EXPECT_GT(frames[kind].size(), 3U) << kind;
    }
}
