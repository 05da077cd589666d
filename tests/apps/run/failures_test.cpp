// SPDX-License-Identifier: MIT
#include "run/failures.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <stdexcept>
#include <string>
#include <vector>

using namespace quorvel;
using namespace quorvel::run;

namespace {

struct Told {
    std::vector<std::string> lines;
    Failures failures{[this](std::string const& line) { lines.push_back(line); }};

    bool fail(std::string const& text, int code = 0) {
        return failures.attempt([&] { throw files::HostError(text, code); });
    }
};

} // namespace

TEST(Failures, AStepThatWorksIsNone) {
    Told told;
    EXPECT_TRUE(told.failures.attempt([] {}));
    EXPECT_EQ(told.failures.last(), "");
    EXPECT_TRUE(told.lines.empty());
}

TEST(Failures, AreSaidAtOnceAndTheLastIsKept) {
    Told told;
    EXPECT_FALSE(told.fail("one"));
    EXPECT_FALSE(told.fail("two"));
    EXPECT_EQ(told.lines, (std::vector<std::string>{"one", "two"}));
    EXPECT_EQ(told.failures.last(), "two");
}

TEST(Failures, OfOneReasonAreSaidOnce) {
    Told told;
    told.fail("cannot write a: No space left on device");
    EXPECT_FALSE(told.fail("cannot write a: No space left on device"));
    EXPECT_EQ(told.lines.size(), 1U);
}

TEST(Failures, AReaderOfStandardOutputThatHasSeenEnoughIsNotSaid) {
    Told told;
    EXPECT_FALSE(told.fail("cannot write to standard output: Broken pipe", EPIPE));
    EXPECT_TRUE(told.lines.empty());
    EXPECT_NE(told.failures.last(), "") << "the status reports it";
}

TEST(Failures, FaultsOfTheProgramPass) {
    Told told;
    EXPECT_THROW(told.failures.attempt([] { throw std::logic_error("a fault"); }), std::logic_error);
}
