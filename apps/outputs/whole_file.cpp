// SPDX-License-Identifier: MIT
#include "outputs/whole_file.h"

#include "host/host_error.h"

#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace quorvel::host {

namespace {

namespace fs = std::filesystem;

bool isReplaceable(fs::path const& path) {
    std::error_code error;
    auto const type = fs::status(path, error).type();
    return type == fs::file_type::not_found || type == fs::file_type::regular;
}

// A symbolic link stays; the file that it leads to is replaced.
fs::path followed(fs::path const& path) {
    std::error_code error;
    auto const target = fs::canonical(path, error);
    return error ? path : target;
}

// Hidden, and of this process alone, so that two that write the same file do not write into each other's.
fs::path beside(fs::path const& path) {
    auto const name = "." + path.filename().string() + "." + std::to_string(::getpid()) + ".new";
    return path.parent_path() / name;
}

void write(fs::path const& path, std::string const& content, std::string const& name) {
    errno = 0;
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << content;
    file.close();
    if (!file) throw systemError("write", name);
}

} // namespace

void writeWhole(std::string const& path, std::string const& content) {
    auto const file = followed(path);
    if (!isReplaceable(file)) return write(file, content, path);
    auto const fresh = beside(file);
    std::error_code error;
    try {
        write(fresh, content, path);
    } catch (HostError const&) {
        fs::remove(fresh, error);
        throw;
    }
    fs::rename(fresh, file, error);
    if (!error) return;
    std::error_code ignored;
    fs::remove(fresh, ignored);
    throw HostError("cannot replace " + path + ": " + error.message());
}

void makeFolder(std::string const& path) {
    std::error_code error;
    fs::create_directories(path, error);
    if (error) throw HostError("cannot make the folder " + path + ": " + error.message());
}

} // namespace quorvel::host
