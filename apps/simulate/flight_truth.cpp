// SPDX-License-Identifier: MIT
#include "simulate/flight_truth.h"

namespace quorvel::simulate {

namespace {

std::string digitsOf(std::uint32_t value, unsigned count, unsigned bitsEach) {
    std::string text;
    while (count-- > 0) text += "0123456789ABCDEF"[value >> count * bitsEach & ((1U << bitsEach) - 1)];
    return text;
}

} // namespace

std::string_view nameOf(AddressKind kind) {
    constexpr std::string_view kNames[] = {"icao", "non-icao", "track-file", "tis-b"};
    return kNames[static_cast<std::size_t>(kind)];
}

std::string hexText(std::uint32_t address) { return digitsOf(address, 6, 4); }

std::string addressText(Profile const& profile) {
    return (profile.addressKind == AddressKind::Icao ? "" : "~") + hexText(profile.address);
}

std::string squawkText(std::uint32_t squawk) { return digitsOf(squawk, 4, 3); }

std::string registerText(unsigned number) { return digitsOf(number >> 4, 1, 4) + ',' + digitsOf(number & 0xF, 1, 4); }

} // namespace quorvel::simulate
