// SPDX-License-Identifier: MIT
#include "core/file_replacement.h"

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

[[noreturn]] void fail(std::string const& what, std::string const& path, std::error_code const& error) {
    throw std::ios_base::failure("cannot " + what + " " + path, error);
}

#if TREVALLO_POSIX_FILES

constexpr auto kUnchanged = static_cast<uid_t>(-1);

long processNumber() { return ::getpid(); }

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

// Permissions and, where that is allowed, the owner, or the group at least.
void takeOver(std::string const& from, std::string const& to) {
    struct stat old {};
    if (::stat(from.c_str(), &old) != 0) return;
    auto const chown = [&](uid_t owner) { return ::chown(to.c_str(), owner, old.st_gid) == 0; };
    if (!chown(old.st_uid) && !chown(kUnchanged)) errno = 0; // only root may give files away
    if (::chmod(to.c_str(), old.st_mode & 07777) != 0) fail("keep the permissions of", from, lastError());
}

#else

long processNumber() { return 0; }

void flushFile(std::string const&) {}
void flushFolder(fs::path const&) {}

void takeOver(std::string const& from, std::string const& to) {
    std::error_code error;
    auto const old = fs::status(from, error);
    if (fs::exists(old)) fs::permissions(to, old.permissions(), error);
}

#endif

// The file that the path leads to. A link to nothing leads to where its file would be made. Not for devices and pipes:
// where /dev/stdout leads to a pipe, the text of the link is no path.
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

// An ordinary file, or none yet: no device, pipe or folder.
bool isOrdinary(fs::path const& path) {
    std::error_code error;
    auto const type = fs::status(path, error).type();
    return type == fs::file_type::regular || type == fs::file_type::not_found;
}

bool mayBeWritten(fs::path const& path) {
    std::error_code error;
    return !fs::exists(path, error) || std::ofstream(path, std::ios::app).is_open();
}

// A name of its own, so that two processes or threads that write the same file do not write into each other's: within a
// process the counts differ, on one machine the process numbers, and across machines that share a folder the place of
// the stack.
fs::path beside(fs::path const& path) {
    static std::atomic<unsigned> written = 0;
    auto const count = written++;
    auto const place = reinterpret_cast<std::uintptr_t>(&count);
    return path.parent_path() / (".trevallo-" + std::to_string(processNumber()) + "-" + std::to_string(place) + "-" +
                                    std::to_string(count) + ".new");
}

} // namespace

FileReplacement::FileReplacement(std::string const& path)
    : _replaced(isOrdinary(path) ? followed(path).string() : path) {
    _written = isOrdinary(_replaced) && mayBeWritten(_replaced) ? beside(_replaced).string() : _replaced;
}

FileReplacement::~FileReplacement() {
    std::error_code ignored;
    if (!_committed && !isDirect()) fs::remove(_written, ignored);
}

void FileReplacement::commit() {
    if (!isDirect()) flushFile(_written);
    commitUnflushed();
    if (!isDirect()) flushFolder(fs::path(_replaced).parent_path());
}

void FileReplacement::commitUnflushed() {
    if (!isDirect()) {
        takeOver(_replaced, _written);
        std::error_code error;
        fs::rename(_written, _replaced, error);
        if (error) fail("replace", _replaced, error);
    }
    _committed = true;
}

} // namespace quorvel::modes
