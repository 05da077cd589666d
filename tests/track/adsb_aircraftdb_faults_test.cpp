// SPDX-License-Identifier: MIT
// The database file under what happens to files: full disks, missing permissions, a sudden end.
#include <modes/adsb_aircraftdb.h>
#include <modes/adsb_tracker.h>

#include "support/captured_log.h"
#include "support/random_bytes.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <iterator>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace quorvel::modes;

namespace {

namespace fs = std::filesystem;

constexpr unsigned kRows = 3000;

std::string contentOf(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::size_t filesIn(std::string const& folder) {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), {}));
}

AircraftDB databaseOf(unsigned rows, std::string const& airline) {
    AircraftDB database;
    for (unsigned address = 1; address <= rows; ++address) {
        auto const aircraft = database.createAircraft(address);
        aircraft->setMopsVersion(MOPS_V2);
        aircraft->setAirline(airline);
    }
    return database;
}

// Runs in a process of its own, which may be limited and killed; its result is the exit status.
template <class Run> pid_t started(Run const& run) {
    auto const child = fork();
    if (child == 0) {
        Log::setShowLevel(Log::Error);
        _exit(run());
    }
    return child;
}

int statusOf(pid_t child) {
    int status = -1;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

constexpr int kSaved = 0;
constexpr int kThrewAsTheLibraryDoes = 1;
constexpr int kUnprepared = 2;
constexpr int kDamaged = 3;

int statusOfSaving(std::string const& path, std::string const& airline) {
    try {
        return databaseOf(kRows, airline).save(path) ? kSaved : kUnprepared;
    } catch (std::ios_base::failure const&) {
        return kThrewAsTheLibraryDoes;
    }
}

// Puts an empty disk in place of a folder, for the calling process only: it is gone at its end. Only root
// may.
bool mountDisk(std::string const& folder, char const* size) {
    return unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("tmpfs", folder.c_str(), "tmpfs", 0, size) == 0;
}

class AircraftDBFaults : public testing::Test {
protected:
    test::CapturedLog log{Log::Error};
    test::TemporaryFolder folder;
    std::string path = folder.path("aircraft.csv");
    std::string before;

    void SetUp() override {
        ASSERT_TRUE(databaseOf(kRows, "OLD").save(path));
        before = contentOf(path);
    }

    bool isTheOldFileAlone() const { return contentOf(path) == before && filesIn(folder.path("")) == 1; }

    void expectTheOldFileAlone() {
        EXPECT_TRUE(contentOf(path) == before);
        EXPECT_EQ(filesIn(folder.path("")), 1U) << "something was left behind";
    }
};

} // namespace

TEST_F(AircraftDBFaults, LeaveTheOldFileWhenTheDiskIsFull) {
    for (rlim_t const limit : {0UL, 1UL, 5000UL, 30'000UL}) {
        auto const saving = started([&] {
            std::signal(SIGXFSZ, SIG_IGN);
            rlimit const most{limit, limit};
            if (setrlimit(RLIMIT_FSIZE, &most) != 0) return kUnprepared;
            return statusOfSaving(path, "NEW");
        });
        EXPECT_EQ(statusOf(saving), kThrewAsTheLibraryDoes) << limit;
        expectTheOldFileAlone();
    }
}

TEST_F(AircraftDBFaults, LeaveTheOldFileWhenTheLastByteDoesNotFit) {
    auto const saving = started([&] {
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit const most{before.size() - 1, before.size() - 1};
        if (setrlimit(RLIMIT_FSIZE, &most) != 0) return kUnprepared;
        return statusOfSaving(path, "NEW");
    });
    EXPECT_EQ(statusOf(saving), kThrewAsTheLibraryDoes);
    expectTheOldFileAlone();
}

// There is room for one file, not for an old and a new one. A later save that fits succeeds: the room that
// the failed one took is free again.
TEST_F(AircraftDBFaults, LeaveTheOldFileOnASmallDiskThatIsFull) {
    auto const saving = started([&] {
        if (!mountDisk(folder.path(""), "size=64k")) return kUnprepared;
        if (statusOfSaving(path, "OLD") != kSaved) return kDamaged;
        auto const status = statusOfSaving(path, "NEW");
        if (!isTheOldFileAlone() || !databaseOf(kRows / 5, "NEW").save(path)) return kDamaged;
        return status;
    });
    auto const status = statusOf(saving);
    if (status == kUnprepared) GTEST_SKIP() << "no disk can be mounted here";
    EXPECT_EQ(status, kThrewAsTheLibraryDoes);
}

TEST_F(AircraftDBFaults, ThrowForADeviceThatTakesNothing) {
    EXPECT_THROW(databaseOf(kRows, "NEW").save("/dev/full"), std::ios_base::failure);
    EXPECT_TRUE(databaseOf(kRows, "NEW").save("/dev/null"));
}

TEST_F(AircraftDBFaults, LeaveTheOldFileInAFolderThatMayNotBeWritten) {
    auto const saving = started([&] {
        fs::permissions(folder.path(""),
            fs::perms::owner_read | fs::perms::owner_exec | fs::perms::others_read | fs::perms::others_exec);
        if (geteuid() == 0 && setuid(65534) != 0) return kUnprepared; // nothing is forbidden to root
        return statusOfSaving(path, "NEW");
    });
    EXPECT_EQ(statusOf(saving), kThrewAsTheLibraryDoes);
    fs::permissions(folder.path(""), fs::perms::owner_all);
    expectTheOldFileAlone();
}

TEST_F(AircraftDBFaults, LeaveAFileThatMayNotBeWritten) {
    auto const saving = started([&] {
        fs::permissions(folder.path(""), fs::perms::all);
        fs::permissions(path, fs::perms::owner_read | fs::perms::others_read);
        if (geteuid() == 0 && setuid(65534) != 0) return kUnprepared;
        return statusOfSaving(path, "NEW");
    });
    EXPECT_EQ(statusOf(saving), kThrewAsTheLibraryDoes);
    expectTheOldFileAlone();
}

TEST_F(AircraftDBFaults, RememberTheNameWhenSavingFailed) {
    AircraftDB database = databaseOf(3, "NEW");
    EXPECT_THROW(database.save(folder.path("none/aircraft.csv")), std::ios_base::failure);
    fs::create_directory(folder.path("none"));
    EXPECT_TRUE(database.save());
    EXPECT_TRUE(fs::exists(folder.path("none/aircraft.csv")));
}

// A process that saves one content after the other is killed at 200 moments: the file is one of them, whole.
TEST_F(AircraftDBFaults, LeaveOneWholeFileWhenTheProcessIsKilled) {
    auto const one = before;
    ASSERT_TRUE(databaseOf(kRows, "TWO").save(path));
    auto const two = contentOf(path);
    test::Noise noise(5);
    for (int round = 0; round < 200; ++round) {
        auto const saving = started([&] {
            auto const first = databaseOf(kRows, "OLD");
            auto const second = databaseOf(kRows, "TWO");
            for (;;) {
                AircraftDB(first).save(path);
                AircraftDB(second).save(path);
            }
            return kUnprepared;
        });
        std::this_thread::sleep_for(std::chrono::microseconds(2000 + noise.below(20'000)));
        kill(saving, SIGKILL);
        ASSERT_EQ(statusOf(saving), 128 + SIGKILL);
        auto const content = contentOf(path);
        ASSERT_TRUE(content == one || content == two) << round << ": " << content.size() << " bytes";
    }
}
