// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

namespace quorvel::airspace {

/// A block of aircraft addresses that one state assigns. Its size is a power of two, and its first address a multiple of
/// that.
struct AddressBlock {
    std::uint32_t first = 0;   ///< its lowest address
    std::uint8_t freeBits = 0; ///< how many low bits the state assigns: 10, 12, 15, 18 or 20
    std::string_view code;     ///< the state by two letters, as in ISO 3166-1; empty of ICAO's own blocks
    std::string_view state;    ///< its short name in English

    constexpr std::uint32_t last() const { return first + (1U << freeBits) - 1; } ///< its highest address
    constexpr bool contains(std::uint32_t address) const { return address >> freeBits == first >> freeBits; }
};

/// All blocks in order of their addresses. Source: ICAO Annex 10 Vol. III, Part I, table 9-1.
struct AddressBlocks {
    AddressBlock const* begin() const;
    AddressBlock const* end() const;
};

/// The block of an address of 24 bits; null of an address that no state assigns.
AddressBlock const* addressBlockOf(std::uint32_t address);

/// Whether an address is of a block that a state has published as that of its armed forces: of the United States, all
/// after its last civil registration.
bool isMilitaryAddress(std::uint32_t address);

} // namespace quorvel::airspace
