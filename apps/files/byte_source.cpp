// SPDX-License-Identifier: MIT
#include "files/byte_source.h"

#include "files/host_error.h"
#include "files/stop_signals.h"

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace quorvel::files {

namespace {

constexpr std::size_t kPieceBytes = 64 * 1024;

} // namespace

void ByteSource::Close::operator()(std::FILE* file) const {
    if (file != stdin) std::fclose(file);
}

ByteSource::ByteSource(std::string const& name)
    : _name(name == "-" ? "standard input" : name), _file(name == "-" ? stdin : std::fopen(name.c_str(), "rb")) {
    if (!_file) throw systemError("read", _name);
    std::error_code error;
    if (name != "-" && std::filesystem::is_regular_file(name, error)) _size = std::filesystem::file_size(name, error);
}

bool ByteSource::read(std::string& bytes) {
    if (_decompressor) return unpack(bytes);
    bool const isBeginning = _done == 0;
    if (!readFile(bytes)) return false;
    if (isBeginning) _decompressor = airspace::Decompressor::forStream(bytes);
    if (!_decompressor) return true;
    _packed.swap(bytes);
    _rest = _packed;
    return unpack(bytes);
}

bool ByteSource::readFile(std::string& bytes) {
    bytes.clear();
    if (!StopSignals::waitReadable(::fileno(_file.get()))) return false;
    bytes.resize(kPieceBytes);
    ssize_t count = 0;
    do { // what a pipe has is passed on at once, not only when a piece is full
        count = ::read(::fileno(_file.get()), bytes.data(), bytes.size());
    } while (count < 0 && errno == EINTR);
    if (count < 0) throw systemError("read", _name);
    bytes.resize(static_cast<std::size_t>(count));
    _done += bytes.size();
    return count > 0;
}

// What could be unpacked before damage, or before the end of a truncated file, is kept.
bool ByteSource::unpack(std::string& bytes) {
    bytes.clear();
    while (_complaint.empty()) {
        bool const isSound = _decompressor->unpack(_rest, bytes);
        if (!isSound) _complaint = "its compressed data is damaged";
        if (!bytes.empty()) return true;
        if (!isSound || !_rest.empty()) continue;
        if (!readFile(_packed)) {
            if (!StopSignals::requested() && !_decompressor->isWhole()) _complaint = "its compressed data is cut short";
            return false;
        }
        _rest = _packed;
    }
    return false;
}

} // namespace quorvel::files
