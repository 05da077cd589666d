// SPDX-License-Identifier: MIT
#pragma once

#include "harness/input.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace quorvel::fuzz {

/// Cuts streams into pieces whose lengths the input chooses: from one byte to what a socket delivers at once.
class Pieces {
public:
    explicit Pieces(Input& input) : _lengths(input.bytes(kLengths)) {}

    /// Hands over one piece after the other. A piece goes on where `mayEndAfter` its last byte says no.
    template <class MayEndAfter, class Take>
    void of(std::string_view stream, MayEndAfter mayEndAfter, Take take) const {
        for (std::size_t number = 0; !stream.empty(); ++number) {
            auto size = std::min(length(number), stream.size());
            while (size < stream.size() && !mayEndAfter(stream[size - 1])) ++size;
            take(stream.substr(0, size));
            stream.remove_prefix(size);
        }
    }

private:
    static constexpr std::size_t kLengths = 4; // used in turn

    // One byte for 1 to 128 bytes, then in steps of 512 bytes up to 64 KiB.
    std::size_t length(std::size_t number) const {
        if (_lengths.empty()) return 1;
        auto const code = static_cast<unsigned char>(_lengths[number % _lengths.size()]);
        return code < 128 ? code + 1U : (code - 127U) * 512U;
    }

    std::string _lengths;
};

} // namespace quorvel::fuzz
