// SPDX-License-Identifier: MIT
#pragma once

#include "airspace/readings/word.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace quorvel::airspace {

/// The 56 bits of a register, numbered as the standards do: from 1, first and last of a field included.
class RegisterBits {
public:
    static constexpr std::size_t kBytes = 7;

    /// `bytes` has `kBytes` bytes: two words that share the fourth.
    explicit RegisterBits(std::string_view bytes)
        : _bytes(bytes), _value(std::uint64_t{word(bytes, 0)} << 24 | word(bytes, 3)) {}

    /// A mask of the bits `first` to `last` in `value()`.
    static constexpr std::uint64_t mask(unsigned first, unsigned last) {
        return ((std::uint64_t{1} << (last - first + 1)) - 1) << (56 - last);
    }

    std::string_view bytes() const { return _bytes; }
    std::uint64_t value() const { return _value; }

    bool flag(unsigned position) const { return (_value >> (56 - position) & 1) != 0; }

    /// An unsigned number.
    std::uint32_t number(unsigned first, unsigned last) const {
        return static_cast<std::uint32_t>(_value >> (56 - last) & ((std::uint64_t{1} << (last - first + 1)) - 1));
    }

    /// A number in two's complement, its sign in `first`.
    int signedNumber(unsigned first, unsigned last) const {
        auto const magnitude = static_cast<int>(number(first + 1, last));
        return flag(first) ? magnitude - (1 << (last - first)) : magnitude;
    }

    /// The number of the bits after `status` up to `last` if that bit is set.
    std::optional<int> numberIf(unsigned status, unsigned last) const {
        if (!flag(status)) return std::nullopt;
        return static_cast<int>(number(status + 1, last));
    }

    /// The same in two's complement.
    std::optional<int> signedNumberIf(unsigned status, unsigned last) const {
        if (!flag(status)) return std::nullopt;
        return signedNumber(status + 1, last);
    }

private:
    std::string_view _bytes;
    std::uint64_t _value;
};

} // namespace quorvel::airspace
