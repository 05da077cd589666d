// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/decompressor.h>

#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>

namespace quorvel::files {

/// A recording or standard input, read piece by piece so that its size does not matter. Files compressed with
/// gzip or zstd are unpacked.
class ByteSource {
public:
    /// Opens a file; "-" is standard input. Throws HostError when it cannot be read.
    explicit ByteSource(std::string const& name);

    /// Name for messages: the file's, or "standard input".
    std::string const& name() const { return _name; }

    /// Bytes in all, for an ordinary file, and how many of them have been read.
    std::optional<std::uint64_t> size() const { return _size; }
    std::uint64_t done() const { return _done; }

    /// Reads what is there, up to one piece, into `bytes`; false at the end, and when a stop signal has come. Throws
    /// HostError when reading fails.
    bool read(std::string& bytes);

    /// What is wrong with the compressed data, after its end: damaged or cut short; empty when nothing is wrong.
    std::string const& complaint() const { return _complaint; }

private:
    struct Close {
        void operator()(std::FILE* file) const;
    };

    bool readFile(std::string& bytes);
    bool unpack(std::string& bytes);

    std::string _name;
    std::unique_ptr<std::FILE, Close> _file;
    std::optional<std::uint64_t> _size;
    std::uint64_t _done = 0;
    std::unique_ptr<airspace::Decompressor> _decompressor;
    std::string _packed;
    std::string_view _rest; // of `_packed`, not yet unpacked
    std::string _complaint;
};

} // namespace quorvel::files
