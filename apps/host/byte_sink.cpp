// SPDX-License-Identifier: MIT
#include "host/byte_sink.h"

#include "host/host_error.h"
#include "host/replaced_file.h"

#include <cerrno>
#include <filesystem>
#include <system_error>
namespace quorvel::host {

namespace fs = std::filesystem;

ByteSink::ByteSink(std::string const& name)
    : _name(name == "-" ? "standard output" : name)
    , _file(name == "-" ? stdout : nullptr)
    , _compressor(Compressor::forFile(name)) {
    if (_file != nullptr) return;
    auto const file = followed(name);
    bool const isOrdinary = isReplaceable(file);
    if (isOrdinary) _place = file;
    _written = isOrdinary ? beside(file) : file;
    _file = std::fopen(_written.c_str(), "wb");
    if (_file == nullptr) throw systemError("write", _name);
}

ByteSink::~ByteSink() {
    if (_file == nullptr || _file == stdout) return;
    std::fclose(_file);
    std::error_code ignored;
    if (!_place.empty()) fs::remove(_written, ignored);
}

void ByteSink::write(std::string_view bytes) {
    if (!_compressor) return put(bytes);
    _packed.clear();
    _compressor->pack(bytes, _packed);
    put(_packed);
}

void ByteSink::put(std::string_view bytes) {
    if (std::fwrite(bytes.data(), 1, bytes.size(), _file) != bytes.size()) throw systemError("write", _name);
}

void ByteSink::finish() {
    if (_compressor) {
        _packed.clear();
        _compressor->finish(_packed);
        put(_packed);
    }
    if (std::fflush(_file) != 0) throw systemError("write", _name);
    if (_place.empty()) return;
    bool const isClosed = std::fclose(_file) == 0;
    _file = nullptr;
    std::error_code error;
    if (isClosed) fs::rename(_written, _place, error);
    if (isClosed && !error) return;
    int const reason = isClosed ? error.value() : errno;
    fs::remove(_written, error);
    errno = reason;
    throw systemError("write", _name);
}

} // namespace quorvel::host
