// SPDX-License-Identifier: MIT
#include "core/file_replacement.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

using namespace quorvel::modes;

namespace {

namespace fs = std::filesystem;

std::string contentOf(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void write(std::string const& path, std::string const& content) {
    std::ofstream(path, std::ios::binary) << content;
}

std::size_t filesIn(std::string const& folder) {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), {}));
}

void replace(std::string const& path, std::string const& content) {
    FileReplacement replacement(path);
    write(replacement.path(), content);
    replacement.commit();
}

} // namespace

TEST(FileReplacement, LeavesTheOldFileUntilTheNewOneIsWhole) {
    test::TemporaryFolder const folder;
    auto const path = folder.write("file", "old");
    FileReplacement replacement(path);
    write(replacement.path(), "new");
    EXPECT_EQ(contentOf(path), "old");
    replacement.commit();
    EXPECT_EQ(contentOf(path), "new");
    EXPECT_EQ(filesIn(folder.path("")), 1U);
}

TEST(FileReplacement, LeavesNothingBehindWhenItIsGivenUp) {
    test::TemporaryFolder const folder;
    auto const path = folder.write("file", "old");
    {
        FileReplacement const replacement(path);
        write(replacement.path(), "ne");
    }
    EXPECT_EQ(contentOf(path), "old");
    EXPECT_EQ(filesIn(folder.path("")), 1U);
}

TEST(FileReplacement, MakesAFileThatDoesNotExistYet) {
    test::TemporaryFolder const folder;
    replace(folder.path("file"), "new");
    EXPECT_EQ(contentOf(folder.path("file")), "new");
}

TEST(FileReplacement, KeepsThePermissions) {
    test::TemporaryFolder const folder;
    auto const path = folder.write("file", "old");
    auto const permissions = fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read;
    fs::permissions(path, permissions);
    replace(path, "new");
    EXPECT_EQ(fs::status(path).permissions(), permissions);
}

TEST(FileReplacement, ReplacesTheFileThatALinkLeadsTo) {
    test::TemporaryFolder const folder;
    fs::create_directory(folder.path("far"));
    auto const far = folder.write("far/file", "old");
    fs::create_symlink("far/file", folder.path("link"));
    fs::create_symlink("link", folder.path("link to link"));
    replace(folder.path("link to link"), "new");
    EXPECT_TRUE(fs::is_symlink(folder.path("link")));
    EXPECT_TRUE(fs::is_symlink(folder.path("link to link")));
    EXPECT_EQ(contentOf(far), "new");
}

TEST(FileReplacement, MakesTheFileThatALinkToNothingLeadsTo) {
    test::TemporaryFolder const folder;
    fs::create_symlink("file", folder.path("link"));
    replace(folder.path("link"), "new");
    EXPECT_TRUE(fs::is_symlink(folder.path("link")));
    EXPECT_EQ(contentOf(folder.path("file")), "new");
}

TEST(FileReplacement, WritesDirectlyWhatCannotBeReplaced) {
    EXPECT_EQ(FileReplacement("/dev/null").path(), "/dev/null");
    test::TemporaryFolder const folder;
    EXPECT_EQ(FileReplacement(folder.path("")).path(), folder.path("")) << "a folder";
    fs::create_symlink("loop", folder.path("loop"));
    EXPECT_EQ(FileReplacement(folder.path("loop")).path(), folder.path("loop"));
}

TEST(FileReplacement, FailsAsStreamsDoWhenNothingWasWritten) {
    test::TemporaryFolder const folder;
    auto const path = folder.write("file", "old");
    FileReplacement replacement(path);
    EXPECT_THROW(replacement.commit(), std::ios_base::failure);
    EXPECT_EQ(contentOf(path), "old");
}

TEST(FileReplacement, GivesTwoWritersOfOneFileEachAPlaceOfTheirOwn) {
    test::TemporaryFolder const folder;
    FileReplacement const one(folder.path("file"));
    FileReplacement const other(folder.path("file"));
    EXPECT_NE(one.path(), other.path());
}
