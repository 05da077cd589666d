// SPDX-License-Identifier: MIT
#include "core/file_replacement.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <grp.h>
#include <iterator>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace quorvel::modes;
using test::content;

namespace {

namespace fs = std::filesystem;

void write(std::string const& path, std::string const& text) { std::ofstream(path, std::ios::binary) << text; }

std::size_t filesIn(std::string const& folder) {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), {}));
}

void replace(std::string const& path, std::string const& text) {
    FileReplacement replacement(path);
    write(replacement.path(), text);
    replacement.commit();
}

} // namespace

TEST(FileReplacement, LeavesTheOldFileUntilTheNewOneIsWhole) {
    test::TemporaryFolder const folder;
    auto const path = folder.write("file", "old");
    FileReplacement replacement(path);
    write(replacement.path(), "new");
    EXPECT_EQ(content(path), "old");
    replacement.commit();
    EXPECT_EQ(content(path), "new");
    EXPECT_EQ(filesIn(folder.path("")), 1U);
}

TEST(FileReplacement, LeavesNothingBehindWhenItIsGivenUp) {
    test::TemporaryFolder const folder;
    auto const path = folder.write("file", "old");
    {
        FileReplacement const replacement(path);
        write(replacement.path(), "ne");
    }
    EXPECT_EQ(content(path), "old");
    EXPECT_EQ(filesIn(folder.path("")), 1U);
}

TEST(FileReplacement, MakesAFileThatDoesNotExistYet) {
    test::TemporaryFolder const folder;
    replace(folder.path("file"), "new");
    EXPECT_EQ(content(folder.path("file")), "new");
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
    EXPECT_EQ(content(far), "new");
}

TEST(FileReplacement, MakesTheFileThatALinkToNothingLeadsTo) {
    test::TemporaryFolder const folder;
    fs::create_symlink("file", folder.path("link"));
    replace(folder.path("link"), "new");
    EXPECT_TRUE(fs::is_symlink(folder.path("link")));
    EXPECT_EQ(content(folder.path("file")), "new");
}

TEST(FileReplacement, WritesDirectlyWhatCannotBeReplaced) {
    EXPECT_EQ(FileReplacement("/dev/null").path(), "/dev/null");
    test::TemporaryFolder const folder;
    EXPECT_EQ(FileReplacement(folder.path("")).path(), folder.path("")) << "a folder";
    fs::create_symlink("loop", folder.path("loop"));
    EXPECT_EQ(FileReplacement(folder.path("loop")).path(), folder.path("loop"));
}

TEST(FileReplacement, WritesAPipeDirectlyWhateverLeadsToIt) {
    test::TemporaryFolder const folder;
    auto const pipe = folder.path("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    fs::create_symlink("pipe", folder.path("link"));
    EXPECT_EQ(FileReplacement(pipe).path(), pipe);
    EXPECT_EQ(FileReplacement(folder.path("link")).path(), folder.path("link"));
    int ends[2] = {};
    ASSERT_EQ(::pipe(ends), 0);
    auto const opened = "/proc/self/fd/" + std::to_string(ends[1]); // what /dev/stdout leads to
    EXPECT_EQ(FileReplacement(opened).path(), opened);
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST(FileReplacement, KeepsTheGroupWhereTheOwnerCannotBeKept) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can make a file of another owner";
    constexpr gid_t kGroup = 4711;
    constexpr uid_t kOther = 65534;
    test::TemporaryFolder const folder;
    auto const path = folder.write("file", "old");
    ASSERT_EQ(::chown(path.c_str(), 0, kGroup), 0);
    fs::permissions(path, static_cast<fs::perms>(0660));
    fs::permissions(folder.path(""), fs::perms::all);
    auto const child = ::fork();
    if (child == 0) {
        if (::setgroups(1, &kGroup) != 0 || ::setgid(kOther) != 0 || ::setuid(kOther) != 0) ::_exit(2);
        replace(path, "new");
        ::_exit(0);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    struct stat now {};
    ASSERT_EQ(::stat(path.c_str(), &now), 0);
    EXPECT_EQ(content(path), "new");
    EXPECT_EQ(now.st_uid, kOther);
    EXPECT_EQ(now.st_gid, kGroup);
    EXPECT_EQ(now.st_mode & 07777U, 0660U);
}

TEST(FileReplacement, KeepsTheOwnerWhereRootReplaces) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root may give files away";
    test::TemporaryFolder const folder;
    auto const path = folder.write("file", "old");
    ASSERT_EQ(::chown(path.c_str(), 65534, 65534), 0);
    replace(path, "new");
    struct stat now {};
    ASSERT_EQ(::stat(path.c_str(), &now), 0);
    EXPECT_EQ(now.st_uid, 65534U);
    EXPECT_EQ(now.st_gid, 65534U);
}

TEST(FileReplacement, IsTheSameWithoutWaitingForTheDisk) {
    test::TemporaryFolder const folder;
    auto const path = folder.write("file", "old");
    fs::permissions(path, static_cast<fs::perms>(0640));
    FileReplacement replacement(path);
    write(replacement.path(), "new");
    replacement.commitUnflushed();
    EXPECT_EQ(content(path), "new");
    EXPECT_EQ(fs::status(path).permissions(), static_cast<fs::perms>(0640));
    EXPECT_EQ(filesIn(folder.path("")), 1U);
}

TEST(FileReplacement, GivesEachProcessAPlaceOfItsOwn) {
    test::TemporaryFolder const folder;
    auto const path = folder.path("file");
    int ends[2] = {};
    ASSERT_EQ(::pipe(ends), 0);
    auto const child = ::fork(); // the same count and the same place of the stack
    FileReplacement const replacement(path);
    if (child == 0) {
        auto const& own = replacement.path();
        ::_exit(::write(ends[1], own.data(), own.size()) == static_cast<ssize_t>(own.size()) ? 0 : 1);
    }
    ::close(ends[1]);
    std::string of(4096, '\0');
    of.resize(static_cast<std::size_t>(std::max<ssize_t>(::read(ends[0], of.data(), of.size()), 0)));
    ::close(ends[0]);
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(fs::path(of).parent_path(), fs::path(replacement.path()).parent_path());
    EXPECT_NE(of, replacement.path());
}

TEST(FileReplacement, FailsAsStreamsDoWhenNothingWasWritten) {
    test::TemporaryFolder const folder;
    auto const path = folder.write("file", "old");
    FileReplacement replacement(path);
    EXPECT_THROW(replacement.commit(), std::ios_base::failure);
    EXPECT_EQ(content(path), "old");
}

TEST(FileReplacement, GivesTwoWritersOfOneFileEachAPlaceOfTheirOwn) {
    test::TemporaryFolder const folder;
    FileReplacement const one(folder.path("file"));
    FileReplacement const other(folder.path("file"));
    EXPECT_NE(one.path(), other.path());
}
