// SPDX-License-Identifier: MIT
#include <modes/trevallo.h>

#include <gmock/gmock.h>

using namespace quorvel::modes;
using testing::HasSubstr;
using testing::Not;

TEST(Trevallo, TellsItsVersion) { EXPECT_EQ(Trevallo().version(), "1.0.2"); }

TEST(Trevallo, TellsItsRevisionInSevenCharacters) {
    auto const build = Trevallo().build();
    EXPECT_EQ(build.size(), 7U);
    EXPECT_EQ(build.find_first_not_of("0123456789abcdef"), std::string::npos) << build;
}

TEST(Trevallo, TellsItsOriginInOneLine) {
    EXPECT_THAT(Trevallo().about(), HasSubstr("trevallo"));
    EXPECT_THAT(Trevallo().about(), Not(HasSubstr("\n")));
}

TEST(Trevallo, NamesTheMakersAddress) { EXPECT_EQ(Trevallo().contact(), "https://quorvel.example/trevallo"); }
