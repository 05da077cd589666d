// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>

namespace quorvel::modes {

/// Makes a string hold `Size` bytes, few enough to be kept inside of it.
template <std::size_t Size> void remake(std::string& target, char const* bytes) {
    char copy[Size]; // the bytes may be the target's own
    std::memcpy(copy, bytes, Size);
    std::destroy_at(&target);
    std::construct_at(&target, copy, Size);
}

/// Makes a string hold these bytes. Frames and payloads are 7 or 14 bytes long; with the length known, a copy
/// is a few moves inside the object where an assignment calls one function after the other.
inline void assignBytes(std::string& target, char const* bytes, std::size_t size) {
    switch (size) {
    case 7: return remake<7>(target, bytes);
    case 14: return remake<14>(target, bytes);
    default: target.assign(bytes, size);
    }
}

} // namespace quorvel::modes
