// SPDX-License-Identifier: MIT
#pragma once

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace quorvel::net {

/// The number that a text of digits is; none for anything else, and for more than `most`.
inline std::optional<unsigned> wholeNumber(std::string_view text, unsigned most) {
    unsigned value = 0;
    auto const* const end = text.data() + text.size();
    auto const read = std::from_chars(text.data(), end, value);
    if (text.empty() || read.ec != std::errc() || read.ptr != end || value > most) return {};
    return value;
}

} // namespace quorvel::net
