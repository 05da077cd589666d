// SPDX-License-Identifier: MIT
#include "airspace/sky/frame_receiver.h"

#include "airspace/readings/read_into.h"
#include "airspace/sky/reply_reading.h"
#include "core/wire.h"
#include "modes/repair.h"

#include <algorithm>
#include <type_traits>
#include <variant>

namespace quorvel::airspace {

namespace {

using modes::ModeSMessage;
using LongFrame = std::array<char, kLongFrameBytes>;
constexpr unsigned kLongFrameBits = 8 * kLongFrameBytes;

std::string_view textOf(LongFrame const& frame) { return {frame.data(), frame.size()}; }

std::uint32_t addressField(std::string_view frame) {
    return modes::bits<std::uint32_t>(frame, modes::wire::kAddressAt, modes::wire::kAddressBits);
}

// Inverts the one or two bits that explain the remainder, and notes them.
bool repair(std::uint32_t remainder, LongFrame& frame, Reply& reply) {
    auto const invert = [&](unsigned position) {
        frame[position / 8] =
            static_cast<char>(static_cast<unsigned char>(frame[position / 8]) ^ 0x80U >> position % 8);
        reply.repairedBits[reply.repairs++] = static_cast<std::uint8_t>(position + 1);
    };
    if (auto const damaged = modes::repair::findBit(remainder, kLongFrameBits)) {
        invert(*damaged);
        return true;
    }
    auto const damaged = modes::repair::findPair(remainder, kLongFrameBits);
    if (!damaged) return false;
    invert(damaged->first);
    invert(damaged->second);
    return true;
}

// A damaged squitter is read again once it is repaired. Where the format itself was damaged, another one comes out,
// and it cannot be told which is right.
void repairSquitter(std::string_view frame, MessageHeader const& damaged, Reply& reply) {
    LongFrame repaired;
    std::copy_n(frame.begin(), repaired.size(), repaired.begin());
    auto const format = damaged.format;
    if (!repair(damaged.remainder, repaired, reply)) return;
    if (modes::wire::formatCode(textOf(repaired)) != format) {
        reply.repairs = 0;
        reply.repairedBits = {};
        return;
    }
    readInto(reply.message, textOf(repaired));
}

template <class Kind> constexpr bool kHasAltitude = requires(Kind kind) { kind.altitude; };
template <class Kind> constexpr bool kHasSquawk = requires(Kind kind) { kind.squawk; };

// Sets whether the frame is decoded, its address and how far that is trusted, by the kind of message.
class Grading {
public:
    Grading(modes::Trust& trust, Reply& reply, std::string_view frame, std::int64_t now)
        : _trust(trust), _received(reply), _frame(frame), _now(now) {}

    template <class Kind> void operator()(Kind const& reply) {
        if constexpr (kHasAltitude<Kind>) {
            bool const isMetric = reply.altitude.coding == AltitudeCoding::Metric;
            accept(reply.address, _trust.gradeAltitude(reply.address, isMetric, _now));
        } else if constexpr (kHasSquawk<Kind>) {
            accept(reply.address, _trust.gradeIdentity(reply.address, reply.squawk.code, _now));
        }
    }

    void operator()(AllCallReply const& reply) {
        accept(reply.address, _trust.gradeAllCall(reply.address, reply.remainder, _now));
    }

    void operator()(ExtendedSquitter const& squitter) {
        if (squitter.isIntact()) accept(squitter.address, _trust.gradeSquitter(squitter.address, _now));
    }

    // Those for military use have a layout of their own, and no parity that is known.
    void operator()(MilitarySquitter const& squitter) {
        if (squitter.application != 0) return accept(0, ModeSMessage::LOW);
        auto const address = addressField(_frame);
        if (squitter.remainder == 0) accept(address, _trust.gradeSquitter(address, _now));
    }

private:
    void accept(std::uint32_t address, Reply::Confidence confidence) {
        _received.isDecoded = true;
        _received.address = address;
        _received.confidence = confidence;
    }

    modes::Trust& _trust;
    Reply& _received;
    std::string_view _frame;
    std::int64_t _now; // s
};

} // namespace

Reply FrameReceiver::receive(std::string_view frame, TimeMs time) {
    Reply reply;
    if (frame.size() <= kModeAcFrameBytes) return reply;
    readInto(reply.message, frame);
    auto const* squitter = std::get_if<ExtendedSquitter>(&reply.message);
    if (squitter && !squitter->isIntact()) repairSquitter(frame, *squitter, reply);
    std::visit(Grading(_trust, reply, frame, static_cast<std::int64_t>(time / 1000)), reply.message);
    describe(frame, reply);
    return reply;
}

} // namespace quorvel::airspace
