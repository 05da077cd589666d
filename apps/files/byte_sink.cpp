// SPDX-License-Identifier: MIT
#include "files/byte_sink.h"

#include "files/host_error.h"
#include "files/replaced_file.h"

#include <utility>

namespace quorvel::files {

ByteSink::ByteSink(std::string const& name)
    : _name(name == "-" ? "standard output" : name)
    , _file(name == "-" ? stdout : nullptr)
    , _compressor(Compressor::forFile(name)) {
    if (_file != nullptr) return;
    makeFolderOf(name);
    _replaced = std::make_unique<ReplacedFile>(name);
    _file = std::fopen(_replaced->path().c_str(), "wb");
    if (_file == nullptr) throw systemError("write", _name);
}

ByteSink::~ByteSink() {
    if (_file != nullptr && _file != stdout) std::fclose(_file);
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
    if (!_replaced) return;
    if (std::fclose(std::exchange(_file, nullptr)) != 0) throw systemError("write", _name);
    _replaced->commit();
}

} // namespace quorvel::files
