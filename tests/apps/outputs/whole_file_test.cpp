// SPDX-License-Identifier: MIT
#include "outputs/whole_file.h"

#include "host/host_error.h"

#include "pictures.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>

using namespace quorvel;
using host::test::content;
using modes::test::TemporaryFolder;

namespace {

std::ptrdiff_t filesIn(std::string const& folder) {
    return std::distance(std::filesystem::directory_iterator(folder), {});
}

} // namespace

TEST(WholeFile, IsReplacedAndLeavesNothingBeside) {
    TemporaryFolder folder;
    auto const path = folder.path("file");
    host::writeWhole(path, "old");
    host::writeWhole(path, "new");
    EXPECT_EQ(content(path), "new");
    EXPECT_EQ(filesIn(folder.path("")), 1);
}

TEST(WholeFile, StaysAsItIsForThoseWhoHaveItOpen) {
    TemporaryFolder folder;
    auto const path = folder.write("file", "old");
    std::ifstream reader(path);
    host::writeWhole(path, "newer");
    std::string text;
    reader >> text;
    EXPECT_EQ(text, "old");
}

TEST(WholeFile, ReplacesTheFileThatALinkLeadsTo) {
    TemporaryFolder folder;
    auto const path = folder.write("file", "old");
    std::filesystem::create_symlink("file", folder.path("link"));
    host::writeWhole(folder.path("link"), "new");
    EXPECT_EQ(content(path), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link")));
}

TEST(WholeFile, LeavesDevicesInTheirPlace) {
    host::writeWhole("/dev/null", "anything");
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST(WholeFile, SaysSoWhenItCannotBeWritten) {
    TemporaryFolder folder;
    EXPECT_THROW(host::writeWhole(folder.path("missing/file"), ""), host::HostError);
    EXPECT_THROW(host::writeWhole(folder.path(""), ""), host::HostError) << "a folder is no file";
    EXPECT_EQ(filesIn(folder.path("")), 0);
}

TEST(Folder, IsMadeWithThoseThatItIsIn) {
    TemporaryFolder folder;
    host::makeFolder(folder.path("a/b"));
    host::makeFolder(folder.path("a/b"));
    EXPECT_TRUE(std::filesystem::is_directory(folder.path("a/b")));
    EXPECT_THROW(host::makeFolder(folder.write("file", "") + "/c"), host::HostError);
}
