// SPDX-License-Identifier: MIT
#pragma once

#include <modes/adsb_message.h>

#include "core/bits.h"
#include "core/wire.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quorvel::modes {

using wire::kPayloadBytes;

/// The type code: the first five bits of a payload.
inline constexpr std::uint8_t kTypeCodePosition = 0;
inline constexpr std::uint8_t kTypeCodeWidth = wire::kTypeCodeBits;

inline std::uint8_t typeCodeOf(std::string_view payload) {
    return bits<std::uint8_t>(payload, kTypeCodePosition, kTypeCodeWidth);
}

} // namespace quorvel::modes
