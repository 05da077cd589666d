// SPDX-License-Identifier: MIT
#include "outputs/stats_json.h"

#include "pictures.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>

using namespace quorvel;
using namespace quorvel::outputs::test;
using modes::test::TemporaryFolder;
using nlohmann::json;

TEST(StatsJson, TellsAllCountsOfTheRunAndOfEachSource) {
    auto picture = pictureOf({});
    picture.counters.frames = 10;
    picture.counters.byFormat[17] = 7;
    picture.counters.byFormat[11] = 3;
    picture.counters.positionsTooFast = 2;
    picture.sources.resize(2);
    picture.sources[1].name = "tcp://localhost:30005";
    picture.sources[1].state = "connected";
    picture.sources[1].counters.badLines = 4;
    auto const stats = json::parse(outputs::statsJson(picture));
    EXPECT_EQ(stats["aircraft"], 0);
    EXPECT_EQ(stats["counters"]["frames"], 10);
    EXPECT_EQ(stats["counters"]["frames_by_format"], (json{{"11", 3}, {"17", 7}}));
    EXPECT_EQ(stats["counters"]["replies_by_confidence"].size(), 4U);
    EXPECT_EQ(stats["counters"]["positions_too_fast"], 2);
    ASSERT_EQ(stats["sources"].size(), 2U);
    EXPECT_EQ(stats["sources"][1]["name"], "tcp://localhost:30005");
    EXPECT_EQ(stats["sources"][1]["state"], "connected");
    EXPECT_EQ(stats["sources"][1]["counters"]["bad_lines"], 4);
    EXPECT_EQ(stats["sources"][1]["lastFrame"], nullptr) << "no frame yet";
}

TEST(StatsJson, ReplacesItsFileAsAWhole) {
    TemporaryFolder folder;
    outputs::StatsJson output(folder.path("stats.json"));
    auto picture = pictureOf({});
    for (std::uint64_t const frames : {1U, 2U}) {
        picture.counters.frames = frames;
        output.picture(picture);
        EXPECT_EQ(json::parse(std::ifstream(folder.path("stats.json")))["counters"]["frames"], frames);
    }
}

TEST(StatsLines, HasALineForEachPicture) {
    Written written;
    outputs::StatsLines output(sinkTo(written));
    output.picture(pictureOf({}));
    output.finish(pictureOf({}));
    EXPECT_EQ(written.items, std::vector<std::string>(2, outputs::statsJson(pictureOf({}))));
    EXPECT_EQ(written.flushes, 2);
}
