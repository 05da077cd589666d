// SPDX-License-Identifier: MIT
#include "files/replaced_file.h"

#include "core/file_replacement.h"
#include "files/host_error.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <ios>
#include <system_error>
#include <utility>

namespace quorvel::files {

namespace {

namespace fs = std::filesystem;

void write(ReplacedFile const& replaced, std::string const& name, std::string const& content) {
    errno = 0;
    std::ofstream file(replaced.path(), std::ios::binary | std::ios::trunc);
    file << content;
    file.close();
    if (!file) throw systemError("write", name);
}

template <class Commit> void replace(std::string const& name, Commit const& commit) {
    try {
        commit();
    } catch (std::ios_base::failure const& error) {
        throw HostError("cannot replace " + name + ": " + error.code().message(), error.code().value());
    }
}

} // namespace

ReplacedFile::ReplacedFile(std::string name)
    : _name(std::move(name)), _replacement(std::make_unique<modes::FileReplacement>(_name)) {}

ReplacedFile::~ReplacedFile() = default;

std::string const& ReplacedFile::path() const { return _replacement->path(); }

void ReplacedFile::commit() {
    replace(_name, [&] { _replacement->commit(); });
}

void ReplacedFile::commitUnflushed() {
    replace(_name, [&] { _replacement->commitUnflushed(); });
}

void writeWhole(std::string const& path, std::string const& content) {
    ReplacedFile replaced(path);
    write(replaced, path, content);
    replaced.commit();
}

void writeMomentary(std::string const& path, std::string const& content) {
    ReplacedFile replaced(path);
    write(replaced, path, content);
    replaced.commitUnflushed();
}

void makeFolder(std::string const& path) {
    std::error_code error;
    fs::create_directories(path, error);
    if (error) throw HostError("cannot make the folder " + path + ": " + error.message());
}

void makeFolderOf(std::string const& file, std::string const& what) {
    auto const folder = fs::path(file).parent_path();
    std::error_code error;
    if (!folder.empty()) fs::create_directories(folder, error);
    if (!error) return;
    throw HostError("cannot " + what + " " + file + ": no folder can be made for it: " + error.message());
}

} // namespace quorvel::files
