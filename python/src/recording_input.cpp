// SPDX-License-Identifier: MIT
#include "recording_input.h"

#include <cstddef>
#include <utility>

namespace quorvel::modes::python {

namespace {

constexpr std::size_t kPieceBytes = 64 * 1024;
constexpr std::size_t kReadBytes = 4 * kPieceBytes; // at once, of a file

class Memory : public RecordingInput {
public:
    explicit Memory(BytesView view) : _view(std::move(view)), _rest(_view.bytes()) {}

    std::string_view next() override {
        auto const piece = _rest.substr(0, kPieceBytes);
        _rest.remove_prefix(piece.size());
        return piece;
    }

private:
    BytesView _view;
    std::string_view _rest;
};

// What could be unpacked before damage, or before the end of a truncated file, is kept.
class File : public RecordingInput {
public:
    explicit File(py::object const& path) : _file(py::module_::import("io").attr("open")(path, "rb")) {}

    ~File() override {
        py::gil_scoped_acquire const lock;
        try {
            _file.attr("close")();
        } catch (py::error_already_set& error) {
            error.discard_as_unraisable("close");
        }
    }

    std::string_view next() override {
        _plain.clear();
        while (_plain.size() < kPieceBytes && !_complaint) {
            if (_packed.empty() && !read()) break;
            unpack();
        }
        return _plain;
    }

    void warn() const override {
        if (!_complaint) return;
        auto const text = py::str(_file.attr("name")).cast<std::string>() + ": " + _complaint;
        if (PyErr_WarnEx(PyExc_UserWarning, text.c_str(), 1) != 0) throw py::error_already_set();
    }

private:
    // False at the end.
    bool read() {
        py::gil_scoped_acquire const lock;
        bool const isBeginning = !std::exchange(_hasBegun, true);
        _piece = _file.attr("read")(kReadBytes);
        _packed = _piece;
        if (isBeginning) _decompressor = airspace::Decompressor::forStream(_packed);
        if (_packed.empty() && _decompressor && !_decompressor->isWhole())
            _complaint = "its compressed data is cut short";
        return !_packed.empty();
    }

    void unpack() {
        if (!_decompressor) {
            _plain.append(_packed);
            _packed = {};
        } else if (!_decompressor->unpack(_packed, _plain)) {
            _complaint = "its compressed data is damaged";
        }
    }

    py::object _file;
    bool _hasBegun = false;
    py::bytes _piece;         // as it was read
    std::string_view _packed; // what is left of it
    std::string _plain;
    std::unique_ptr<airspace::Decompressor> _decompressor;
    char const* _complaint = nullptr;
};

} // namespace

std::unique_ptr<RecordingInput> openInput(py::object const& data) {
    if (BytesView view; view.open(data)) return std::make_unique<Memory>(std::move(view));
    if (py::isinstance<py::str>(data) || py::hasattr(data, "__fspath__")) return std::make_unique<File>(data);
    throw py::type_error("a recording is bytes, or the path of a file");
}

} // namespace quorvel::modes::python
