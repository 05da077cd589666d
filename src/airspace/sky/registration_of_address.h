// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quorvel::airspace {

/// The marks of an aircraft, as they are painted on it; empty if unknown.
class Registration {
public:
    std::string_view text() const { return {_characters.data(), _size}; }
    bool isEmpty() const { return _size == 0; }
    void append(char character) { _characters[_size++] = character; } ///< at most 8

private:
    std::array<char, 8> _characters{};
    std::size_t _size = 0;
};

/// The registration that an address tells; empty where it tells none.
///
/// The United States number theirs in order: N1, N1A, N1AA to N1AZ, N1B and so on up to N99999, without the letters I
/// and O, are A00001 to ADF7C7. Other states do not assign addresses by registration, or have published no rule.
/// Source: the numbering of 14 CFR 47.15, in the order of the Federal Aviation Administration's register.
Registration registrationOfAddress(std::uint32_t address);

} // namespace quorvel::airspace
