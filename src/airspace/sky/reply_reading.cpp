// SPDX-License-Identifier: MIT
#include "airspace/sky/reply_reading.h"

#include <modes/df_message.h>

#include "core/bits.h"
#include "core/wire.h"

#include <array>
#include <iterator>
#include <variant>

namespace quorvel::airspace {

namespace {

// What is laid over the parity of a message, by its kind.
template <class Kind> constexpr Overlay kOverlay = Overlay::Address;
template <> constexpr Overlay kOverlay<std::monostate> = Overlay::Unknown;
template <> constexpr Overlay kOverlay<OtherReply> = Overlay::Unknown;
template <> constexpr Overlay kOverlay<ExtendedSquitter> = Overlay::Nothing;
template <> constexpr Overlay kOverlay<AllCallReply> = Overlay::Interrogator;
template <> constexpr Overlay kOverlay<MilitarySquitter> = Overlay::Nothing; // of application 0

template <class... Kinds> Overlay overlayOf(std::variant<Kinds...> const& message) {
    constexpr std::array overlays{kOverlay<Kinds>...};
    auto const* const military = std::get_if<MilitarySquitter>(&message);
    return military && military->application != 0 ? Overlay::Unknown : overlays[message.index()];
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

void describe(std::string_view frame, Reply& reply) {
    reply.format = modes::DFMessage::downlinkFormatByCode(modes::wire::formatCode(frame));
    reply.overlay = overlayOf(reply.message);
    if (!reply.isDecoded) return;
    reply.overlaid = headerOf(reply.message)->remainder;
    if (auto const* squitter = std::get_if<ExtendedSquitter>(&reply.message)) reply.typeCode = squitter->typeCode;
}

Reply readReply(Frame const& frame, modes::ModeSMessage const* message) {
    Reply reply;
    if (frame.length <= kModeAcFrameBytes) return reply;
    reply.message = message ? read(*message) : read(frame);
    if (message != nullptr) {
        reply.isDecoded = true;
        reply.address = message->icaoAddress();
        reply.confidence = message->confidence();
        readRepairs(frame.view(), message->data(), reply);
    }
    describe(frame.view(), reply);
    return reply;
}

} // namespace quorvel::airspace
