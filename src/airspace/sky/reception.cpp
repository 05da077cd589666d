// SPDX-License-Identifier: MIT
#include "airspace/sky/reception.h"

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
bool repair(std::uint32_t remainder, LongFrame& frame, Reception& reception) {
    auto const invert = [&](unsigned position) {
        frame[position / 8] =
            static_cast<char>(static_cast<unsigned char>(frame[position / 8]) ^ 0x80U >> position % 8);
        reception.repairedBits[reception.repairs++] = static_cast<std::uint8_t>(position + 1);
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
void repairSquitter(std::string_view frame, MessageHeader const& damaged, Reception& reception) {
    LongFrame repaired;
    std::copy_n(frame.begin(), repaired.size(), repaired.begin());
    auto const format = damaged.format;
    if (!repair(damaged.remainder, repaired, reception)) return;
    if (modes::wire::formatCode(textOf(repaired)) != format) {
        reception.repairs = 0;
        reception.repairedBits = {};
        return;
    }
    reception.message = read(textOf(repaired));
}

template <class Reply> constexpr bool kHasAltitude = requires(Reply reply) { reply.altitude; };
template <class Reply> constexpr bool kHasSquawk = requires(Reply reply) { reply.squawk; };

// Sets whether the frame is decoded, its address and how far that is trusted, by the kind of message.
class Grading {
public:
    Grading(modes::Trust& trust, Reception& reception, std::string_view frame, std::int64_t now)
        : _trust(trust), _reception(reception), _frame(frame), _now(now) {}

    template <class Reply> void operator()(Reply const& reply) {
        if constexpr (kHasAltitude<Reply>) {
            bool const isMetric = reply.altitude.coding == AltitudeCoding::Metric;
            accept(reply.address, _trust.gradeAltitude(reply.address, isMetric, _now));
        } else if constexpr (kHasSquawk<Reply>) {
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
        _reception.isDecoded = true;
        _reception.address = address;
        _reception.confidence = confidence;
    }

    modes::Trust& _trust;
    Reception& _reception;
    std::string_view _frame;
    std::int64_t _now; // s
};

} // namespace

Reception FrameReceiver::receive(std::string_view frame, TimeMs time) {
    Reception reception{read(frame)};
    auto const* squitter = std::get_if<ExtendedSquitter>(&reception.message);
    if (squitter && !squitter->isIntact()) repairSquitter(frame, *squitter, reception);
    std::visit(Grading(_trust, reception, frame, static_cast<std::int64_t>(time / 1000)), reception.message);
    return reception;
}

} // namespace quorvel::airspace
