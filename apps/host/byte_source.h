// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>

namespace quorvel::host {

/// A recording or standard input, read piece by piece so that its size does not matter.
class ByteSource {
public:
    /// Opens a file; "-" is standard input. Throws HostError when it cannot be read.
    explicit ByteSource(std::string const& name);

    /// Name for messages: the file's, or "standard input".
    std::string const& name() const { return _name; }

    /// Bytes in all, for an ordinary file.
    std::optional<std::uint64_t> size() const { return _size; }

    /// Reads what is there, up to one piece, into `bytes`; false at the end, and when a signal to stop has
    /// come. Throws HostError when reading fails.
    bool read(std::string& bytes);

private:
    struct Close {
        void operator()(std::FILE* file) const;
    };

    std::string _name;
    std::unique_ptr<std::FILE, Close> _file;
    std::optional<std::uint64_t> _size;
};

} // namespace quorvel::host
