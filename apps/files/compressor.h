// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace quorvel::files {

/// Compresses what goes into a file, piece by piece.
class Compressor {
public:
    virtual ~Compressor() = default;

    /// Appends the compressed data that is ready to `packed`.
    virtual void pack(std::string_view plain, std::string& packed) = 0;

    /// Appends what is left. Nothing follows.
    virtual void finish(std::string& packed) = 0;

    /// The one for a file of this name: gzip for ".gz", zstd for ".zst"; none for others.
    static std::unique_ptr<Compressor> forFile(std::string_view name);
};

} // namespace quorvel::files
