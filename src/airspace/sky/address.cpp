// SPDX-License-Identifier: MIT
#include <airspace/address.h>

#include "core/hex.h"
#include "core/wire.h"

namespace quorvel::airspace {

std::string addressText(std::uint32_t address, AddressKind kind) {
    std::string text(kind == AddressKind::Icao ? "" : "~");
    modes::appendHex(text, address, modes::wire::kAddressBits / 4);
    return text;
}

} // namespace quorvel::airspace
