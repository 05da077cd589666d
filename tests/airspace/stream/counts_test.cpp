// SPDX-License-Identifier: MIT
#include <airspace/counts.h>

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <numeric>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

using namespace quorvel::airspace;

namespace {

// All counts one after the other, so that none is forgotten.
using Plain = std::array<Counts::Count, sizeof(Counts) / sizeof(Counts::Count)>;

Plain numbered() {
    Plain plain;
    std::iota(plain.begin(), plain.end(), Counts::Count{1});
    return plain;
}

} // namespace

TEST(Counts, AreZeroAtFirst) { EXPECT_EQ(std::bit_cast<Plain>(Counts()), Plain()); }

TEST(Counts, AreAddedEach) {
    auto sum = std::bit_cast<Counts>(numbered());
    auto more = numbered();
    for (auto& count : more) count *= 1000;
    sum += std::bit_cast<Counts>(more);
    auto expected = numbered();
    for (auto& count : expected) count *= 1001;
    EXPECT_EQ(std::bit_cast<Plain>(sum), expected);
}

TEST(CountTexts, ListEachCountOnce) {
    std::multiset<Counts::Count> told;
    for (auto const& text : listed(std::bit_cast<Counts>(numbered()))) told.insert(text.count);
    auto const all = numbered();
    EXPECT_EQ(told, (std::multiset<Counts::Count>(all.begin(), all.end())));
}

TEST(CountTexts, AreDistinctAndAsPrometheusWantsThem) {
    std::set<std::tuple<std::string, std::string>> names;
    for (auto const& text : listed(std::bit_cast<Counts>(numbered()))) {
        EXPECT_TRUE(names.emplace(text.name, text.value).second) << text.name << text.value;
        EXPECT_EQ(text.label.empty(), text.value.empty()) << text.name;
        EXPECT_EQ(text.name.find_first_not_of("abcdefghijklmnopqrstuvwxyz_"), std::string_view::npos) << text.name;
        EXPECT_TRUE(text.help.ends_with('.')) << text.name;
    }
}

TEST(CountTexts, LeaveOutFormatsThatDidNotOccur) {
    Counts counts;
    counts.byFormat[17] = 7;
    counts.byFormat[4] = 3;
    std::vector<CountText> formats;
    for (auto const& text : listed(counts)) {
        if (text.label == "format") formats.push_back(text);
    }
    ASSERT_EQ(formats.size(), 2U);
    EXPECT_EQ(formats[0].value, "4");
    EXPECT_EQ(formats[0].count, 3U);
    EXPECT_EQ(formats[1].value, "17");
    EXPECT_EQ(formats[1].count, 7U);
    EXPECT_EQ(listed(Counts()).size(), listed(counts).size() - 2) << "all others are there, even when they are zero";
}

TEST(CountTexts, NameTheConfidencesInTheirOrder) {
    Counts counts;
    counts.byConfidence = {1, 2, 3, 4};
    std::string order;
    for (auto const& text : listed(counts)) {
        if (text.label == "confidence") order += std::string(text.value) + "=" + std::to_string(text.count) + " ";
    }
    EXPECT_EQ(order, "none=1 low=2 medium=3 high=4 ");
}
