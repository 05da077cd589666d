// SPDX-License-Identifier: MIT
#include "airspace/sky/reply_reading.h"

#include <modes/df_message.h>

#include "core/bits.h"
#include "core/wire.h"

#include <iterator>
#include <variant>

namespace quorvel::airspace {

namespace {

// What is laid over the parity of a message, by its kind.
struct OverlayOf {
    Overlay operator()(std::monostate) const { return Overlay::Unknown; }
    Overlay operator()(OtherReply const&) const { return Overlay::Unknown; }
    Overlay operator()(ExtendedSquitter const&) const { return Overlay::Nothing; }
    Overlay operator()(AllCallReply const&) const { return Overlay::Interrogator; }
    Overlay operator()(MilitarySquitter const& squitter) const {
        return squitter.application == 0 ? Overlay::Nothing : Overlay::Unknown;
    }
    template <class Addressed> Overlay operator()(Addressed const&) const { return Overlay::Address; }
};

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
    reply.overlay = std::visit(OverlayOf(), reply.message);
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
