// SPDX-License-Identifier: MIT
#include "terminal/keys.h"

#include <gtest/gtest.h>

using namespace quorvel;
using terminal::Key;
using Kind = terminal::Key::Kind;

namespace {

std::vector<Key> keys(std::string bytes, bool isAll = true) { return terminal::takeKeys(bytes, isAll); }

std::vector<Kind> kinds(std::string const& bytes) {
    std::vector<Kind> result;
    for (auto const& key : keys(bytes)) result.push_back(key.kind);
    return result;
}

} // namespace

TEST(Keys, AreCharactersWhereTheyArePrintable) {
    EXPECT_EQ(keys("a/~ "), (std::vector<Key>{{Kind::Character, 'a'}, {Kind::Character, '/'}, {Kind::Character, '~'},
                                {Kind::Character, ' '}}));
    EXPECT_EQ(keys("\xC3\xBC\x01").size(), 0U);
}

TEST(Keys, AreKnownInTheSequencesOfAllTerminals) {
    EXPECT_EQ(kinds("\x1B[A\x1B[B\x1BOA\x1BOB"), (std::vector<Kind>{Kind::Up, Kind::Down, Kind::Up, Kind::Down}));
    EXPECT_EQ(kinds("\x1B[5~\x1B[6~"), (std::vector<Kind>{Kind::PageUp, Kind::PageDown}));
    EXPECT_EQ(kinds("\x1B[H\x1BOH\x1B[1~\x1B[7~"), std::vector<Kind>(4, Kind::Home));
    EXPECT_EQ(kinds("\x1B[F\x1BOF\x1B[4~\x1B[8~"), std::vector<Kind>(4, Kind::End));
    EXPECT_EQ(kinds("\r\n"), std::vector<Kind>(2, Kind::Enter));
    EXPECT_EQ(kinds("\b\x7F"), std::vector<Kind>(2, Kind::Backspace));
    EXPECT_EQ(kinds("\f"), std::vector<Kind>{Kind::Redraw});
}

TEST(Keys, OfNoUseAreLeftOutWhole) {
    EXPECT_EQ(keys("\x1B[15~\x1B[1;5C\x1BOPx"), (std::vector<Key>{{Kind::Character, 'x'}}));
}

TEST(Keys, WaitForTheRestOfTheirSequence) {
    std::string bytes = "x\x1B[";
    EXPECT_EQ(terminal::takeKeys(bytes, false), (std::vector<Key>{{Kind::Character, 'x'}}));
    EXPECT_EQ(bytes, "\x1B[");
    bytes += "A";
    EXPECT_EQ(terminal::takeKeys(bytes, false), std::vector<Key>{{Kind::Up}});
    EXPECT_EQ(bytes, "");
}

TEST(Keys, AreEscapeWhenNothingFollows) {
    EXPECT_EQ(keys("\x1B", false).size(), 0U);
    EXPECT_EQ(keys("\x1B", true), std::vector<Key>{{Kind::Escape}});
    EXPECT_EQ(keys("\x1Bq", false), (std::vector<Key>{{Kind::Escape}, {Kind::Character, 'q'}}));
    EXPECT_EQ(keys("\x1B\x1B[A", false), (std::vector<Key>{{Kind::Escape}, {Kind::Up}}));
}
