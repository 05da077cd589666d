// SPDX-License-Identifier: MIT
#include "run/database_keeper.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

using namespace quorvel;
using namespace quorvel;
using namespace quorvel::run;

namespace {

using Clock = DatabaseKeeper::Clock;

struct Kept {
    modes::test::TemporaryFolder folder;
    std::vector<std::string> lines;
    Failures failures{[this](std::string const& line) { lines.push_back(line); }};
    std::string path = folder.path("aircraft.csv");

    bool isThere() const { return std::filesystem::exists(path); }
};

} // namespace

TEST(DatabaseKeeper, SavesAfterEachInterval) {
    Kept kept;
    Clock::time_point const begin{};
    DatabaseKeeper keeper(kept.path, kept.failures, begin);
    keeper.saveWhenDue(begin + DatabaseKeeper::kInterval - std::chrono::seconds(1));
    EXPECT_FALSE(kept.isThere());
    keeper.saveWhenDue(begin + DatabaseKeeper::kInterval);
    EXPECT_TRUE(kept.isThere());
    std::filesystem::remove(kept.path);
    keeper.saveWhenDue(begin + DatabaseKeeper::kInterval * 2 - std::chrono::seconds(1));
    EXPECT_FALSE(kept.isThere());
    keeper.saveWhenDue(begin + DatabaseKeeper::kInterval * 2);
    EXPECT_TRUE(kept.isThere());
}

TEST(DatabaseKeeper, AFileThatCannotBeSavedIsReportedAtOnceAndStaysAsItIs) {
    Kept kept;
    std::string const content = "no database\n";
    kept.folder.write("aircraft.csv", content);
    DatabaseKeeper keeper(kept.path, kept.failures, {});
    EXPECT_EQ(kept.lines.size(), 1U);
    keeper.save();
    EXPECT_EQ(kept.lines.size(), 1U) << "for one reason once";
    EXPECT_EQ(std::filesystem::file_size(kept.path), content.size());
    EXPECT_NE(kept.failures.last(), "");
}

TEST(DatabaseKeeper, AFileThatCannotBeReadAtAllIsNoBeginning) {
    Kept kept;
    std::filesystem::create_directory(kept.path);
    EXPECT_THROW(DatabaseKeeper(kept.path, kept.failures, {}), files::HostError);
}
