// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/airspace_export.h>

#include <memory>
#include <string>
#include <string_view>

namespace quorvel::airspace {

/// Decompresses a stream of bytes, piece by piece.
class TREVALLO_AIRSPACE_EXPORT Decompressor {
public:
    virtual ~Decompressor();

    /// Appends what the next bytes unpack to, to `plain`, at most 64 KiB, and takes the bytes that it used off
    /// `packed`. False when the data is damaged.
    virtual bool unpack(std::string_view& packed, std::string& plain) = 0;

    /// Whether the data may end here: false in the middle of it.
    virtual bool isWhole() const = 0;

    /// The one for a stream that starts like this: gzip or zstd (four bytes suffice); an empty pointer when it
    /// is not compressed. Throws std::bad_alloc.
    static std::unique_ptr<Decompressor> forStream(std::string_view beginning);
};

} // namespace quorvel::airspace
