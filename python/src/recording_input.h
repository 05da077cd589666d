// SPDX-License-Identifier: MIT
#pragma once

#include "casters.h"

#include <airspace/decompressor.h>

#include <memory>
#include <string>
#include <string_view>

namespace quorvel::modes::python {

/// The bytes of a recording, in order.
class RecordingInput {
public:
    virtual ~RecordingInput() = default;

    /// The next piece, of 64 KiB at least unless it is the last; empty at the end. It is valid until the next call, which
    /// needs no lock of the interpreter.
    virtual std::string_view next() = 0;

    /// Warns of what could not be read.
    virtual void warn() const {}
};

/// Of bytes, or of the file that a text or a path names, which may be compressed. Raises `TypeError` for anything else,
/// and what Python raises for files that cannot be opened.
std::unique_ptr<RecordingInput> openInput(py::object const& data);

} // namespace quorvel::modes::python
