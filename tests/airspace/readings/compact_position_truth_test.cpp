// SPDX-License-Identifier: MIT
#include "airspace/readings/single_case.h"

#include <gtest/gtest.h>

using namespace quorvel::airspace;
using namespace quorvel::airspace::test;

namespace {

double apart(double a, double b) { return std::abs(std::remainder(a - b, 360.0)); }

} // namespace

TEST(CompactPositionTruth, EveryGoldenPositionIsFound) {
    auto const files = truthFiles("golden.jsonl");
    SKIP_WITHOUT(files);
    std::size_t cases = 0;
    forEachLine(files.front(), [&](std::string_view line) {
        auto const one = Json::parse(line);
        if (!isOfPosition(one)) return;
        ++cases;
        auto const& expected = one["expect"];
        auto const place = placeOf(one);
        ASSERT_EQ(place.has_value(), !expected["latitude"].is_null()) << one.dump();
        if (!place) return;
        EXPECT_NEAR(place->latitude, expected["latitude"], one["tol"]["latitude"]) << one.dump();
        EXPECT_LE(apart(place->longitude, expected["longitude"]), one["tol"]["longitude"]) << one.dump();
    });
    EXPECT_GT(cases, 400U);
}
