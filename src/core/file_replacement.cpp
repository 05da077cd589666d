// SPDX-License-Identifier: MIT
#include "core/file_replacement.h"

#include "core/clock.h"

#include <atomic>
#include <cstdint>
#include <fstream>
#include <ios>
#include <system_error>

#if defined(__unix__) || defined(__APPLE__)
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#define TREVALLO_POSIX_FILES 1
#else
#define TREVALLO_POSIX_FILES 0
#endif

namespace quorvel::modes {

namespace {

namespace fs = std::filesystem;

// The file that the path leads to. A link to nothing leads to where its file would be made.
fs::path followed(fs::path path) {
    constexpr int kMostLinks = 40;
    for (int links = 0; links < kMostLinks; ++links) {
        std::error_code error;
        if (!fs::is_symlink(path, error)) return path;
        auto const link = fs::read_symlink(path, error);
        if (error) return path;
        path = path.parent_path() / link;
    }
    return path;
}

bool mayBeWritten(fs::path const& path) { return std::ofstream(path, std::ios::app).is_open(); }

bool isReplaceable(fs::path const& path) {
    std::error_code error;
    auto const type = fs::status(path, error).type();
    return type == fs::file_type::not_found || (type == fs::file_type::regular && mayBeWritten(path));
}

// A name of its own, so that two who write the same file do not write into each other's: in this process they
// have different numbers, in another one a different place in memory or time.
fs::path beside(fs::path const& path) {
    static std::atomic<unsigned> count = 0;
    auto const number = count++;
    auto const place = reinterpret_cast<std::uintptr_t>(&number);
    return path.parent_path() / (".trevallo-" + std::to_string(clock::nowMilliseconds()) + "-" +
                                 std::to_string(place) + "-" + std::to_string(number) + ".new");
}

[[noreturn]] void fail(std::string const& what, std::string const& path, std::error_code const& error) {
    throw std::ios_base::failure("cannot " + what + " " + path, error);
}

#if TREVALLO_POSIX_FILES

std::error_code lastError() { return {errno, std::generic_category()}; }

void flushToDisk(std::string const& path, int flags) {
    int const file = ::open(path.c_str(), flags | O_CLOEXEC);
    if (file < 0) fail("open", path, lastError());
    bool const flushed = ::fsync(file) == 0;
    auto const error = lastError();
    ::close(file);
    if (!flushed) fail("flush", path, error);
}

void flushFile(std::string const& path) { flushToDisk(path, O_RDONLY); }

// The new name is in the folder; some file systems cannot flush that, and some folders may not be read.
void flushFolder(fs::path const& path) {
    try {
        flushToDisk(path.empty() ? "." : path.string(), O_RDONLY | O_DIRECTORY);
    } catch (std::ios_base::failure const&) {
        return;
    }
}

// Permissions and, where that is allowed, the owner.
void takeOver(std::string const& from, std::string const& to) {
    struct stat old {};
    if (::stat(from.c_str(), &old) != 0) return;
    if (::chown(to.c_str(), old.st_uid, old.st_gid) != 0) errno = 0; // only for the mighty
    if (::chmod(to.c_str(), old.st_mode & 07777) != 0) fail("keep the permissions of", from, lastError());
}

#else

void flushFile(std::string const&) {}
void flushFolder(fs::path const&) {}

void takeOver(std::string const& from, std::string const& to) {
    std::error_code error;
    auto const old = fs::status(from, error);
    if (fs::exists(old)) fs::permissions(to, old.permissions(), error);
}

#endif

} // namespace

FileReplacement::FileReplacement(std::string const& path) : _replaced(followed(path).string()) {
    _written = isReplaceable(_replaced) ? beside(_replaced).string() : _replaced;
}

FileReplacement::~FileReplacement() {
    std::error_code ignored;
    if (!_committed && !isDirect()) fs::remove(_written, ignored);
}

void FileReplacement::commit() {
    if (!isDirect()) {
        flushFile(_written);
        takeOver(_replaced, _written);
        std::error_code error;
        fs::rename(_written, _replaced, error);
        if (error) fail("replace", _replaced, error);
        flushFolder(fs::path(_replaced).parent_path());
    }
    _committed = true;
}

} // namespace quorvel::modes
