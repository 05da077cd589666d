// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace quorvel::simulate {

/// Puts numbers of any width one after the other into bytes, most significant bit first.
class BitWriter {
public:
    BitWriter& put(std::uint64_t value, unsigned width) {
        for (unsigned i = width; i-- > 0;) {
            if (_bits % 8 == 0) _bytes += '\0';
            auto const bit = static_cast<unsigned char>((value >> i & 1) << (7 - _bits % 8));
            _bytes.back() = static_cast<char>(static_cast<unsigned char>(_bytes.back()) | bit);
            ++_bits;
        }
        return *this;
    }

    std::string const& bytes() const { return _bytes; }

private:
    std::string _bytes;
    unsigned _bits = 0;
};

} // namespace quorvel::simulate
