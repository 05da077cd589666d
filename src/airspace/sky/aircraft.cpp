// SPDX-License-Identifier: MIT
#include <airspace/aircraft.h>

#include "core/hex.h"
#include "core/wire.h"

namespace quorvel::airspace {

std::string addressText(std::uint32_t address) {
    std::string digits;
    modes::appendHex(digits, address, modes::wire::kAddressBits / 4);
    return digits;
}

} // namespace quorvel::airspace
