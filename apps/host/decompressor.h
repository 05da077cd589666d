// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace quorvel::host {

/// Takes the compression out of a file, piece by piece.
class Decompressor {
public:
    virtual ~Decompressor() = default;

    /// Appends what comes of the next bytes to `plain`, at most one piece, and takes the bytes that it used
    /// off `packed`. False when the data is damaged.
    virtual bool unpack(std::string_view& packed, std::string& plain) = 0;

    /// Whether the data may end here: false in the middle of it.
    virtual bool isWhole() const = 0;

    /// The one for a file that begins like this: gzip or zstd; none when it is not compressed.
    static std::unique_ptr<Decompressor> forFile(std::string_view beginning);
};

} // namespace quorvel::host
