// SPDX-License-Identifier: MIT
#include "outputs/prometheus.h"

#include "files/host_error.h"

#include "pictures.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <regex>
#include <set>

using namespace quorvel;
using namespace quorvel::outputs::test;
using modes::test::TemporaryFolder;

namespace {

std::vector<std::string> lines(std::string const& text) {
    std::vector<std::string> result;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) result.push_back(line);
    return result;
}

bool hasLine(std::string const& text, std::string const& line) {
    auto const all = lines(text);
    return std::find(all.begin(), all.end(), line) != all.end();
}

} // namespace

TEST(Prometheus, TellsAllCountsWithTheirTypesAndHelp) {
    auto picture = pictureOf({});
    picture.counters.bytes = 12'345;
    picture.counters.byFormat[17] = 7;
    picture.counters.byFormat[11] = 3;
    auto const text = outputs::prometheusText(picture, kNow);
    EXPECT_TRUE(hasLine(text, "trevallo_bytes_total 12345"));
    EXPECT_TRUE(hasLine(text, "# TYPE trevallo_bytes_total counter"));
    EXPECT_TRUE(hasLine(text, "trevallo_frames_by_format_total{format=\"17\"} 7"));
    EXPECT_TRUE(hasLine(text, "trevallo_frames_by_format_total{format=\"11\"} 3"));
}

TEST(Prometheus, HasOneHeadForEachFamilyAndOnlyWellFormedLines) {
    auto picture = pictureOf({knownAircraft()});
    picture.counters.byFormat.fill(1);
    picture.sources.push_back(picture.sources[0]);
    picture.sources[1].name = "b";
    std::regex const line(R"(# (HELP trevallo_[a-z_]+ \S.*|TYPE trevallo_[a-z_]+ (counter|gauge)))"
                          R"(|trevallo_[a-z_]+(\{[a-z]+="[^"]*"\})? [0-9.]+)");
    std::set<std::string> heads;
    for (auto const& each : lines(outputs::prometheusText(picture, kNow))) {
        EXPECT_TRUE(std::regex_match(each, line)) << each;
        bool const isHead = each[0] == '#';
        EXPECT_TRUE(!isHead || heads.insert(each).second) << each;
    }
    EXPECT_GT(heads.size(), 20U);
}

TEST(Prometheus, TellsTargetsAndThoseWithAFreshPosition) {
    auto const text =
        outputs::prometheusText(pictureOf({knownAircraft(), knownAircraft(60'001), heardAircraft(1, kNow)}), kNow);
    EXPECT_TRUE(hasLine(text, "trevallo_targets 3"));
    EXPECT_TRUE(hasLine(text, "trevallo_targets_with_position 1"));
}

TEST(Prometheus, TellsWhichSourcesAreUpAndHowFarTheyAreBehind) {
    auto picture = pictureOf({});
    picture.sources[0].name = "a";
    picture.sources.push_back({"b", "waiting to connect again", kNow - 61'500, 0, true, {}});
    picture.sources.push_back({"c", "reading", kNow, 0, false, {}});
    picture.sources.push_back({"d", "ended", 0, 0, true, {}});
    picture.sources.push_back({"e", "2 feeders", 0, 0, true, {}});
    picture.sources.push_back({"f", "waiting for feeders", 0, 0, true, {}});
    picture.sources.push_back({"g", "connecting", 0, 0, true, {}});
    auto const text = outputs::prometheusText(picture, kNow - 500);
    EXPECT_TRUE(hasLine(text, "trevallo_source_up{source=\"a\"} 1"));
    EXPECT_TRUE(hasLine(text, "trevallo_source_up{source=\"b\"} 0"));
    EXPECT_TRUE(hasLine(text, "trevallo_source_up{source=\"c\"} 1"));
    EXPECT_TRUE(hasLine(text, "trevallo_source_up{source=\"d\"} 0"));
    EXPECT_TRUE(hasLine(text, "trevallo_source_up{source=\"e\"} 1"));
    EXPECT_TRUE(hasLine(text, "trevallo_source_up{source=\"f\"} 0"));
    EXPECT_TRUE(hasLine(text, "trevallo_source_up{source=\"g\"} 0"));
    EXPECT_TRUE(hasLine(text, "trevallo_source_seconds_behind{source=\"a\"} 0.000")) << "never negative";
    EXPECT_TRUE(hasLine(text, "trevallo_source_seconds_behind{source=\"b\"} 61.000"));
    EXPECT_EQ(text.find("behind{source=\"c\"}"), std::string::npos) << "its times are of no calendar";
    EXPECT_EQ(text.find("behind{source=\"d\"}"), std::string::npos) << "nothing was heard of it";
}

TEST(Prometheus, EscapesTheNamesOfSources) {
    auto picture = pictureOf({});
    picture.sources[0].name = "a\"b\\c\nd\xFF";
    EXPECT_TRUE(hasLine(
        outputs::prometheusText(picture, kNow), "trevallo_source_up{source=\"a\\\"b\\\\c\\nd\xEF\xBF\xBD\"} 1"));
}

TEST(PrometheusFile, IsReplacedWithEachPicture) {
    TemporaryFolder folder;
    auto const file = folder.path("trevallo.prom");
    airspace::TimeMs now = kNow + 2'000;
    outputs::PrometheusFile output(file, [&] { return now; });
    output.picture(pictureOf({}));
    EXPECT_EQ(content(file), outputs::prometheusText(pictureOf({}), now));
    now += 1'000;
    output.finish(pictureOf({}));
    EXPECT_EQ(content(file), outputs::prometheusText(pictureOf({}), now));
}

TEST(PrometheusFile, SaysSoWhenItCannotBeWritten) {
    TemporaryFolder folder;
    outputs::PrometheusFile output(folder.path(""), [] { return kNow; });
    EXPECT_THROW(output.picture({}), files::HostError) << "a folder is no file";
}
