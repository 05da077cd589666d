// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <cstdint>
#include <string>

namespace quorvel::airspace::test {

/// Writes the fields of a register, numbered as the standards do: from 1, first and last included.
class RegisterWriter {
public:
    RegisterWriter& number(unsigned first, unsigned last, long value) {
        for (auto position = last; position >= first; --position, value >>= 1) {
            auto const mask = std::uint64_t{1} << (56 - position);
            _value = (value & 1) != 0 ? _value | mask : _value & ~mask;
        }
        return *this;
    }

    /// A status bit and, behind it up to `last`, a value in steps; two's complement below 0.
    RegisterWriter& value(unsigned status, unsigned last, double value, double step) {
        return number(status, status, 1).number(status + 1, last, std::lround(value / step));
    }

    std::string bytes() const {
        std::string bytes;
        for (int shift = 48; shift >= 0; shift -= 8) bytes += static_cast<char>(_value >> shift & 0xFF);
        return bytes;
    }

private:
    std::uint64_t _value = 0;
};

} // namespace quorvel::airspace::test
