// SPDX-License-Identifier: MIT
#include "files/byte_sink.h"

#include "files/byte_source.h"
#include "files/host_error.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace quorvel::files {

namespace {

namespace fs = std::filesystem;
using modes::test::TemporaryFolder;

std::string contentOf(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

struct Read {
    std::string bytes;
    std::string complaint;
};

Read readBack(std::string const& path) {
    ByteSource source(path);
    Read read;
    for (std::string piece; source.read(piece);) read.bytes += piece;
    read.complaint = source.complaint();
    return read;
}

std::size_t filesIn(std::string const& folder) {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

// Bytes that do not compress, then bytes that do.
std::string mixedBytes(std::size_t size) {
    std::string bytes;
    std::uint32_t state = 1;
    while (bytes.size() < size / 2) {
        state = state * 1664525 + 1013904223;
        bytes += static_cast<char>(state >> 24);
    }
    return bytes + std::string(size - bytes.size(), 'x');
}

} // namespace

TEST(ByteSink, WritesFilesThatReadBackAsTheyWereCompressedByName) {
    TemporaryFolder const folder;
    for (auto const* name : {"plain", "packed.gz", "packed.zst"}) {
        for (std::size_t const size : {0U, 1U, 65'536U, 1'000'000U}) {
            SCOPED_TRACE(std::string(name) + " " + std::to_string(size));
            auto const bytes = mixedBytes(size);
            ByteSink sink(folder.path(name));
            for (std::size_t at = 0; at < size; at += 100'000) sink.write(std::string_view(bytes).substr(at, 100'000));
            sink.finish();
            auto const read = readBack(folder.path(name));
            EXPECT_TRUE(read.bytes == bytes);
            EXPECT_EQ(read.complaint, "");
        }
    }
    EXPECT_EQ(fs::file_size(folder.path("plain")), 1'000'000U);
    EXPECT_LT(fs::file_size(folder.path("packed.gz")), 600'000U);
    EXPECT_LT(fs::file_size(folder.path("packed.zst")), 600'000U);
}

TEST(ByteSink, LeavesTheOldFileUntilTheNewOneIsFinished) {
    TemporaryFolder const folder;
    auto const path = folder.write("file", "old");
    {
        ByteSink unfinished(path);
        unfinished.write("new");
        EXPECT_EQ(contentOf(path), "old");
    }
    EXPECT_EQ(contentOf(path), "old");
    EXPECT_EQ(filesIn(folder.path("")), 1U);

    ByteSink sink(path);
    sink.write("new");
    sink.finish();
    EXPECT_EQ(contentOf(path), "new");
    EXPECT_EQ(filesIn(folder.path("")), 1U);
}

TEST(ByteSink, KeepsASymbolicLink) {
    TemporaryFolder const folder;
    auto const path = folder.write("file", "old");
    fs::create_symlink(path, folder.path("link"));
    ByteSink sink(folder.path("link"));
    sink.write("new");
    sink.finish();
    EXPECT_TRUE(fs::is_symlink(folder.path("link")));
    EXPECT_EQ(contentOf(path), "new");
}

TEST(ByteSink, SaysWhatCannotBeWritten) {
    TemporaryFolder const folder;
    folder.write("file", "");
    EXPECT_THROW(ByteSink(folder.path("file/file")), HostError);
    EXPECT_THROW(ByteSink(folder.path("")), HostError);
    ByteSink full("/dev/full");
    EXPECT_THROW(
        {
            full.write(std::string(100'000, 'x'));
            full.finish();
        },
        HostError);
}

} // namespace quorvel::files
