// SPDX-License-Identifier: MIT
#include "airspace/sky/reply_reading.h"

#include <modes/df_message.h>

#include "core/bits.h"
#include "core/wire.h"

#include <algorithm>
#include <iterator>

namespace quorvel::airspace {

namespace {

using modes::bits;
using modes::DFMessage;

namespace wire = modes::wire;
using wire::kParityBits;

constexpr std::size_t kUseBits = 3;

// Control and application fields of extended squitters that are not DF17, with which the payload is ADS-B.
struct AdsbUse {
    std::uint8_t format;
    std::uint8_t use;
};
constexpr AdsbUse kAdsbUses[] = {
    {DFMessage::DF18, 0}, {DFMessage::DF18, 1}, {DFMessage::DF18, 6}, {DFMessage::DF19, 0}};

bool hasAdsbPayload(std::string_view frame, std::uint8_t format) {
    if (frame.size() < kLongFrameBytes) return false;
    if (format == DFMessage::DF17) return true;
    auto const use = bits<std::uint8_t>(frame, wire::kFormatBits, kUseBits);
    return std::ranges::any_of(
        kAdsbUses, [&](AdsbUse const& each) { return format == each.format && use == each.use; });
}

Overlay overlayOf(std::string_view frame, std::uint8_t format) {
    switch (format) {
    case DFMessage::DF17:
    case DFMessage::DF18: return Overlay::Nothing;
    case DFMessage::DF19: return hasAdsbPayload(frame, format) ? Overlay::Nothing : Overlay::Unknown;
    case DFMessage::DF11: return Overlay::Interrogator;
    case DFMessage::DF0:
    case DFMessage::DF4:
    case DFMessage::DF5:
    case DFMessage::DF16:
    case DFMessage::DF20:
    case DFMessage::DF21: return Overlay::Address;
    default: return Overlay::Unknown;
    }
}

void readRepairs(std::string_view received, std::string_view decoded, Reply& reply) {
    if (received == decoded) return;
    for (std::size_t i = 0; i < 8 * received.size() && reply.repairs < std::size(reply.repairedBits); ++i) {
        if (modes::bit(received, i) != modes::bit(decoded, i))
            reply.repairedBits[reply.repairs++] = static_cast<std::uint8_t>(i + 1);
    }
}

} // namespace

char categorySetOf(std::uint8_t typeCode) { return static_cast<char>('A' + (4 - typeCode)); }

Reply readReply(Frame const& frame, modes::ModeSMessage const* message) {
    Reply reply;
    if (frame.length <= kModeAcFrameBytes) return reply;
    reply.format = DFMessage::downlinkFormatByCode(wire::formatCode(frame.view()));
    reply.overlay = overlayOf(frame.view(), *reply.format);
    if (message == nullptr) return reply;
    std::string_view const decoded = message->data();
    reply.isDecoded = true;
    reply.address = message->icaoAddress();
    reply.confidence = message->confidence();
    reply.overlaid = bits(decoded, message->bits() - kParityBits, kParityBits) ^ message->calculatedParity();
    readRepairs(frame.view(), decoded, reply);
    if (hasAdsbPayload(decoded, *reply.format)) {
        reply.typeCode = wire::typeCode(decoded);
        reply.type = modes::ADSBMessage::typeByCode(*reply.typeCode);
    }
    return reply;
}

} // namespace quorvel::airspace
