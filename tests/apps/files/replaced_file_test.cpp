// SPDX-License-Identifier: MIT
#include "files/replaced_file.h"

#include "files/host_error.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <iterator>

using namespace quorvel;
using modes::test::content;
using modes::test::TemporaryFolder;

namespace {

std::ptrdiff_t filesIn(std::string const& folder) {
    return std::distance(std::filesystem::directory_iterator(folder), {});
}

} // namespace

TEST(WholeFile, IsReplacedAndLeavesNothingBeside) {
    TemporaryFolder folder;
    auto const path = folder.path("file");
    files::writeWhole(path, "old");
    files::writeWhole(path, "new");
    EXPECT_EQ(content(path), "new");
    EXPECT_EQ(filesIn(folder.path("")), 1);
}

TEST(WholeFile, StaysAsItIsForThoseWhoHaveItOpen) {
    TemporaryFolder folder;
    auto const path = folder.write("file", "old");
    std::ifstream reader(path);
    files::writeWhole(path, "newer");
    std::string text;
    reader >> text;
    EXPECT_EQ(text, "old");
}

TEST(WholeFile, ReplacesTheFileThatALinkLeadsTo) {
    TemporaryFolder folder;
    auto const path = folder.write("file", "old");
    std::filesystem::create_symlink("file", folder.path("link"));
    files::writeWhole(folder.path("link"), "new");
    EXPECT_EQ(content(path), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link")));
}

TEST(WholeFile, LeavesDevicesInTheirPlace) {
    files::writeWhole("/dev/null", "anything");
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST(WholeFile, MakesTheFileThatALinkToNothingLeadsTo) {
    TemporaryFolder folder;
    std::filesystem::create_symlink("file", folder.path("link"));
    files::writeWhole(folder.path("link"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link")));
    EXPECT_EQ(content(folder.path("file")), "new");
}

TEST(WholeFile, KeepsItsPermissions) {
    TemporaryFolder folder;
    auto const path = folder.write("file", "old");
    auto const permissions = static_cast<std::filesystem::perms>(0640);
    std::filesystem::permissions(path, permissions);
    files::writeWhole(path, "new");
    EXPECT_EQ(std::filesystem::status(path).permissions(), permissions);
}

TEST(WholeFile, NamesTheFileThatTheUserNamedWhenItCannotBeReplaced) {
    TemporaryFolder folder;
    auto const path = folder.write("file", "old");
    std::filesystem::create_symlink("file", folder.path("link"));
    files::ReplacedFile replaced(folder.path("link")); // nothing is written
    try {
        replaced.commit();
        FAIL() << "nothing can be replaced by nothing";
    } catch (files::HostError const& error) {
        EXPECT_EQ(error.what(), "cannot replace " + folder.path("link") + ": No such file or directory");
        EXPECT_EQ(error.code(), ENOENT);
    }
    EXPECT_EQ(content(path), "old");
}

TEST(MomentaryFile, IsReplacedAndLeavesNothingBeside) {
    TemporaryFolder folder;
    auto const path = folder.write("file", "old");
    files::writeMomentary(path, "new");
    EXPECT_EQ(content(path), "new");
    EXPECT_EQ(filesIn(folder.path("")), 1);
    EXPECT_THROW(files::writeMomentary(folder.path("missing/file"), ""), files::HostError);
}

TEST(WholeFile, SaysSoWhenItCannotBeWritten) {
    TemporaryFolder folder;
    EXPECT_THROW(files::writeWhole(folder.path("missing/file"), ""), files::HostError);
    EXPECT_THROW(files::writeWhole(folder.path(""), ""), files::HostError) << "a folder is no file";
    EXPECT_EQ(filesIn(folder.path("")), 0);
}

TEST(Folder, IsMadeWithThoseThatItIsIn) {
    TemporaryFolder folder;
    files::makeFolder(folder.path("a/b"));
    files::makeFolder(folder.path("a/b"));
    EXPECT_TRUE(std::filesystem::is_directory(folder.path("a/b")));
    EXPECT_THROW(files::makeFolder(folder.write("file", "") + "/c"), files::HostError);
}
