// SPDX-License-Identifier: MIT
#include "airspace/readings/named_values.h"
#include "airspace/readings/truth.h"
#include "support/bytes.h"

#include <airspace/message_fields.h>

#include <gtest/gtest.h>

#include <set>

using namespace quorvel::airspace;
using namespace quorvel::airspace::test;
using quorvel::modes::test::fromHex;

namespace {

// Of how many frames one is compared: sanitizers are slow, and it is the same code that reads the others.
#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t kStep = 20;
#else
constexpr std::size_t kStep = 1;
#endif

Json valuesOf(std::string const& hex) {
    NamedValues read;
    visitFields(read, quorvel::airspace::read(fromHex(hex)));
    return read.values;
}

// What the truth of recordings does not hold: the remainder, and the values of coarse positions.
bool isBeyondTruth(std::string const& name, Json const& expected) {
    return name == "remainder" || (expected["df"] == 18 && expected.value("cf", 0) == 3);
}

// Every value that one side has and the other has not or has otherwise.
std::string differences(Json const& values, Json const& expected) {
    std::string found;
    for (auto const& [name, value] : expected.items()) {
        if (name == "i" || name == "hex") continue;
        if (!values.contains(name) || !isAsExpected(values[name], value)) found += name + " ";
    }
    for (auto const& [name, value] : values.items()) {
        if (!expected.contains(name) && !isBeyondTruth(name, expected)) found += name + " (too much) ";
    }
    return found;
}

} // namespace

TEST(MessageTruth, EveryRecordedFrameReadsAsTheStandardsSay) {
    auto const files = truthFiles(".fields.jsonl.gz");
    SKIP_WITHOUT(files);
    std::size_t values = 0;
    std::size_t frames = 0;
    for (auto const& file : files) {
        forEachLine(file, [&](std::string_view line) {
            if (frames++ % kStep != 0) return;
            auto const expected = Json::parse(line);
            auto const hex = expected["hex"].get<std::string>();
            values += expected.size() - 2;
            auto const read = valuesOf(hex);
            EXPECT_EQ(differences(read, expected), "") << file << " " << hex << " " << read.dump();
        });
    }
    EXPECT_GT(values, 0U);
    RecordProperty("values", std::to_string(values));
}

// Positions, and registers that the reader is told, are read otherwise.
TEST(MessageTruth, EveryGoldenFrameReadsAsExpected) {
    auto const files = truthFiles("golden.jsonl");
    SKIP_WITHOUT(files);
    std::size_t cases = 0;
    forEachLine(files.front(), [&](std::string_view line) {
        auto const one = Json::parse(line);
        if (one.contains("given") || one["expect"].contains("latitude")) return;
        ++cases;
        auto const read = valuesOf(one["hex"].back().get<std::string>());
        auto const tolerances = one.value("tol", Json::object());
        for (auto const& [name, value] : one["expect"].items()) {
            if (value.is_null())
                EXPECT_FALSE(read.contains(name)) << one["id"] << " " << name;
            else
                EXPECT_TRUE(isAsExpected(read.value(name, Json()), value, tolerances.value(name, 1e-6)))
                    << one["id"] << " " << name << " " << value << " " << read.dump();
        }
    });
    EXPECT_GT(cases, 250U);
}
