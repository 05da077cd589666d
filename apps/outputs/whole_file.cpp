// SPDX-License-Identifier: MIT
#include "outputs/whole_file.h"

#include "host/host_error.h"
#include "host/replaced_file.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace quorvel::host {

namespace {

namespace fs = std::filesystem;

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
