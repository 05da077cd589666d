// SPDX-License-Identifier: MIT
#pragma once

#include "support/bytes.h"

#include <cstdint>
#include <string>

namespace quorvel::airspace::test {

/// The 56-bit field of a long frame, built field by field; bits are counted from 1, as in the standards.
class Payload {
public:
    /// A message of a type code.
    static Payload ofType(unsigned typeCode) { return Payload().with(1, 5, typeCode); }

    Payload with(unsigned first, unsigned last, std::uint64_t value) const {
        Payload next;
        next._bytes = modes::test::withBits(_bytes, first - 1, last - first + 1, value);
        return next;
    }

    Payload with(unsigned position, bool flag = true) const { return with(position, position, flag ? 1 : 0); }

    std::string const& bytes() const { return _bytes; }

private:
    std::string _bytes = std::string(7, '\0');
};

} // namespace quorvel::airspace::test
