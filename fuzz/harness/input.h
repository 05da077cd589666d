// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace quorvel::fuzz {

/// The bytes of one run, taken off the front. What is taken beyond the end is zero, or as short as what is
/// left.
class Input {
public:
    Input(std::uint8_t const* data, std::size_t size) : _left(reinterpret_cast<char const*>(data), size) {}

    bool empty() const { return _left.empty(); }

    std::uint8_t byte() { return number<std::uint8_t>(); }

    /// An unsigned number, most significant byte first.
    template <class Number> Number number() {
        static_assert(std::is_unsigned_v<Number>);
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < sizeof(Number); ++i) {
            value = value << 8 | (_left.empty() ? 0U : static_cast<unsigned char>(_left.front()));
            if (!_left.empty()) _left.remove_prefix(1);
        }
        return static_cast<Number>(value);
    }

    std::string bytes(std::size_t count) {
        std::string const taken(_left.substr(0, count));
        _left.remove_prefix(taken.size());
        return taken;
    }

    std::string rest() { return bytes(_left.size()); }

private:
    std::string_view _left;
};

} // namespace quorvel::fuzz
