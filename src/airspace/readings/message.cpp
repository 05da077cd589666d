// SPDX-License-Identifier: MIT
#include <airspace/message.h>

#include "airspace/readings/read_into.h"
#include "airspace/readings/squitter_contents.h"
#include "core/bits.h"
#include "modes/parity.h"

#include <modes/modes_message.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <type_traits>
#include <utility>

namespace quorvel::airspace {

namespace {

constexpr unsigned kExtendedLengthFormat = 24; // and all above: two bits name it

std::uint8_t byteAt(std::string_view frame, std::size_t position) { return static_cast<std::uint8_t>(frame[position]); }

// The first 32 bits of a frame, numbered as the standards do: from 1, first and last of a field included.
class Head {
public:
    explicit Head(std::string_view frame) : _word(word(frame, 0)) {}

    std::uint32_t number(unsigned first, unsigned last) const {
        return _word >> (32 - last) & ((1U << (last - first + 1)) - 1);
    }
    std::uint8_t code(unsigned first, unsigned last) const { return static_cast<std::uint8_t>(number(first, last)); }
    bool flag(unsigned position) const { return number(position, position) != 0; }

private:
    std::uint32_t _word;
};

void readAltitude(AltitudeCode& altitude, Head head) { readInto(altitude, head.number(20, 32)); }

Squawk squawkOf(Head head) { return readIdentityCode(head.number(20, 32)); }

template <std::size_t Size> std::array<std::uint8_t, Size> bytesOf(std::string_view frame, std::size_t first) {
    std::array<std::uint8_t, Size> bytes;
    for (std::size_t i = 0; i < Size; ++i) bytes[i] = byteAt(frame, first + i);
    return bytes;
}

// The 56-bit field of long frames: MB, ME or MV.
constexpr std::size_t kPayloadByte = 4;
std::string_view payloadOf(std::string_view frame) { return frame.substr(kPayloadByte, RegisterBits::kBytes); }
std::array<std::uint8_t, 7> payloadBytes(std::string_view frame) { return bytesOf<7>(frame, kPayloadByte); }

void copyPayload(std::string_view frame, std::array<std::uint8_t, 7>& to) {
    std::memcpy(to.data(), frame.data() + kPayloadByte, to.size());
}

std::uint32_t parityField(std::string_view frame) { return word(frame, frame.size() - 4) & 0xFFFFFF; }

std::uint32_t remainderOf(std::string_view frame) {
    return modes::parity::remainder(frame, static_cast<unsigned>(8 * frame.size())) ^ parityField(frame);
}

MessageHeader headerOf(std::string_view frame, unsigned format) {
    MessageHeader header;
    header.format = static_cast<std::uint8_t>(format);
    header.remainder = remainderOf(frame);
    return header;
}

// A frame and what is known of it before its format is.
struct Received {
    std::string_view bytes;
    Head head;
    MessageHeader header; // without an address
    Reading const& how;
};

MessageHeader withAddress(MessageHeader header, AddressKind kind, std::uint32_t address) {
    header.addressKind = kind;
    header.address = address;
    return header;
}

MessageHeader addressInParity(Received const& frame) {
    return withAddress(frame.header, AddressKind::Icao, frame.header.remainder);
}

MessageHeader addressInField(Received const& frame, AddressKind kind) {
    return withAddress(frame.header, kind, frame.head.number(9, 32));
}

// Makes a message where it stays. Made of nothing it would be cleared first, and made elsewhere it would be copied, each
// of which costs as much as reading it.
template <class Make> struct Made {
    Make const& make;
    operator std::invoke_result_t<Make>() const noexcept { return make(); } // NOLINT(google-explicit-constructor)
};

template <class Make> auto& make(Message& message, Make const& make) {
    return message.emplace<std::invoke_result_t<Make>>(Made<Make>{make});
}

// A message of this kind with this header.
template <class Reply, class Header> Reply& made(Message& message, Header const& header) {
    return make(message, [&header] {
        Reply reply;
        static_cast<Header&>(reply) = header;
        return reply;
    });
}

SurveillanceHeader surveillanceHeader(Received const& frame) {
    return {addressInParity(frame), {frame.head.code(6, 8)}, frame.head.code(9, 13), frame.head.code(14, 19)};
}

void readShortAirAir(Received const& frame, Message& message) {
    auto& reply = made<ShortAirAirReply>(message, addressInParity(frame));
    reply.isOnGround = frame.head.flag(6);
    reply.hasCrossLink = frame.head.flag(7);
    reply.sensitivity = frame.head.code(9, 11);
    reply.reply = frame.head.code(14, 17);
    readAltitude(reply.altitude, frame.head);
}

void readAltitudeReply(Received const& frame, Message& message) {
    readAltitude(made<AltitudeReply>(message, surveillanceHeader(frame)).altitude, frame.head);
}

void readIdentityReply(Received const& frame, Message& message) {
    made<IdentityReply>(message, surveillanceHeader(frame)).squawk = squawkOf(frame.head);
}

void readCommBAltitude(Received const& frame, Message& message) {
    auto& reply = made<CommBAltitudeReply>(message, surveillanceHeader(frame));
    readAltitude(reply.altitude, frame.head);
    copyPayload(frame.bytes, reply.mb);
}

void readCommBIdentity(Received const& frame, Message& message) {
    auto& reply = made<CommBIdentityReply>(message, surveillanceHeader(frame));
    reply.squawk = squawkOf(frame.head);
    copyPayload(frame.bytes, reply.mb);
}

// The remainder is the interrogator's code: 17 zeros, three bits code label, four bits interrogator code.
void readAllCall(Received const& frame, Message& message) {
    constexpr std::uint32_t kCodes = 80; // labels 0 to 4
    constexpr std::uint32_t kCodesOfLabel = 16;
    auto& reply = made<AllCallReply>(message, addressInField(frame, AddressKind::Icao));
    reply.capability = {frame.head.code(6, 8)};
    reply.isIntact = frame.header.remainder < kCodes;
    auto const code = static_cast<std::uint8_t>(frame.header.remainder);
    if (!reply.isIntact) return;
    if (code < kCodesOfLabel) {
        reply.ii = code;
    } else {
        reply.si = static_cast<std::uint8_t>(code - kCodesOfLabel);
    }
}

void readLongAirAir(Received const& frame, Message& message) {
    constexpr std::uint8_t kAdvisory = 0x30; // register 3,0
    auto& reply = made<LongAirAirReply>(message, addressInParity(frame));
    reply.isOnGround = frame.head.flag(6);
    reply.sensitivity = frame.head.code(9, 11);
    reply.reply = frame.head.code(14, 17);
    readAltitude(reply.altitude, frame.head);
    copyPayload(frame.bytes, reply.mv);
    if (reply.mv.front() != kAdvisory) return;
    auto& advisory = reply.advisory.emplace(readResolutionAdvisory(payloadOf(frame.bytes)));
    advisory.threatType = ThreatType::None;
    advisory.threatAddress.reset();
    advisory.threatAltitudeFt.reset();
    advisory.threatRangeNm.reset();
    advisory.threatBearingDegrees.reset();
}

std::uint8_t typeCodeOf(std::string_view me) { return static_cast<std::uint8_t>(byteAt(me, 0) >> 3); }

void readExtendedSquitter(Received const& frame, Message& message) {
    auto const me = payloadOf(frame.bytes);
    constexpr auto origin = SquitterOrigin::Aircraft;
    make(message, [&] {
        return ExtendedSquitter{addressInField(frame, AddressKind::Icao), Capability{frame.head.code(6, 8)}, {}, origin,
            typeCodeOf(me), subtypeOf(me), readContent(me, origin, frame.how)};
    });
}

// What a control field of format 18 says.
struct ControlField {
    enum class Content : std::uint8_t { TypeCoded, Coarse, Management, Reserved };
    Content content;
    SquitterOrigin origin;
    AddressKind plainKind, flaggedKind; // of the address while the ICAO/Mode A flag is 0, and when it is 1
};

using enum ControlField::Content;
constexpr std::array<ControlField, 8> kControlFields{{
    {TypeCoded, SquitterOrigin::Aircraft, AddressKind::Icao, AddressKind::Icao},
    {TypeCoded, SquitterOrigin::Aircraft, AddressKind::NonIcao, AddressKind::NonIcao},
    {TypeCoded, SquitterOrigin::TisB, AddressKind::Icao, AddressKind::TrackFile},
    {Coarse, SquitterOrigin::TisB, AddressKind::Icao, AddressKind::TrackFile},
    {Management, SquitterOrigin::TisB, AddressKind::None, AddressKind::None},
    {TypeCoded, SquitterOrigin::TisB, AddressKind::TisB, AddressKind::Reserved},
    {TypeCoded, SquitterOrigin::Rebroadcast, AddressKind::Icao, AddressKind::NonIcao},
    {Reserved, SquitterOrigin::Aircraft, AddressKind::Reserved, AddressKind::Reserved},
}};

// Where the ICAO/Mode A flag stands in ME, by type code, from 1; 0 where there is none.
unsigned icaoModeAFlag(unsigned typeCode) {
    constexpr std::array<std::uint8_t, 32> kPositions{
        8, 0, 0, 0, 0, 21, 21, 21, 21, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 9, 8, 8, 8, 0, 0, 0, 0, 0, 56, 51, 0, 56};
    return kPositions[typeCode];
}

unsigned addressFlag(ControlField const& field, std::string_view me) {
    return field.content == Coarse ? 1U : icaoModeAFlag(typeCodeOf(me));
}

AddressKind addressKindOf(ControlField const& field, std::string_view me) {
    auto const position = addressFlag(field, me);
    return position != 0 && modes::bit(me, position - 1) ? field.flaggedKind : field.plainKind;
}

SquitterContent contentOf(ControlField const& field, Received const& frame) {
    auto const me = payloadOf(frame.bytes);
    switch (field.content) {
    case TypeCoded: return readContent(me, field.origin, frame.how);
    case Coarse: return readCoarsePosition(me);
    case Management: return GroundStationManagement{payloadBytes(frame.bytes)};
    default: return UnreadSquitter{payloadBytes(frame.bytes)};
    }
}

void readNonTransponderSquitter(Received const& frame, Message& message) {
    auto const number = frame.head.code(6, 8);
    auto const& field = kControlFields[number];
    auto const me = payloadOf(frame.bytes);
    make(message, [&] {
        return ExtendedSquitter{
            addressInField(frame, addressKindOf(field, me)), {}, number, field.origin, {}, {}, contentOf(field, frame)};
    });
    auto& squitter = std::get<ExtendedSquitter>(message);
    squitter.tellsAddressKind = field.plainKind == field.flaggedKind || addressFlag(field, me) != 0;
    if (field.content != TypeCoded) return;
    squitter.typeCode = typeCodeOf(me);
    squitter.subtype = subtypeOf(me);
}

void readMilitary(Received const& frame, Message& message) {
    made<MilitarySquitter>(message, frame.header).application = frame.head.code(6, 8);
}

void readExtendedLength(Received const& frame, Message& message) {
    auto& reply = made<ExtendedLengthReply>(message, addressInParity(frame));
    reply.isAcknowledgement = frame.head.flag(4);
    reply.segment = frame.head.code(5, 8);
    reply.md = bytesOf<10>(frame.bytes, 1);
}

void readOther(Received const& /*frame*/, Message& /*message*/) {} // which it is from the start

using Reader = void (*)(Received const&, Message&);

constexpr auto kReaders = [] {
    std::array<Reader, kExtendedLengthFormat + 1> readers{};
    readers.fill(readOther);
    readers[0] = readShortAirAir;
    readers[4] = readAltitudeReply;
    readers[5] = readIdentityReply;
    readers[11] = readAllCall;
    readers[16] = readLongAirAir;
    readers[17] = readExtendedSquitter;
    readers[18] = readNonTransponderSquitter;
    readers[19] = readMilitary;
    readers[20] = readCommBAltitude;
    readers[21] = readCommBIdentity;
    readers[24] = readExtendedLength;
    return readers;
}();

// Bytes that a frame has; 0 if it is not whole.
std::size_t wholeBytes(std::string_view frame) {
    auto const size = frame.empty() ? 0 : modeSFrameBytes(frame.front());
    return frame.size() < size ? 0 : size;
}

unsigned formatOf(Head head) { return std::min(head.number(1, 5), kExtendedLengthFormat); }

// All kinds begin with their header, which the compiler sees here: no kind needs a branch of its own.
template <class... Kinds> MessageHeader const* headerIn(std::variant<std::monostate, Kinds...> const& message) {
    MessageHeader const* header = nullptr;
    auto const is = [&header](MessageHeader const* kind) { return (header = kind) != nullptr; };
    static_cast<void>((is(std::get_if<Kinds>(&message)) || ...));
    return header;
}

} // namespace

void readInto(Message& message, std::string_view frame, Reading const& how) {
    auto const size = wholeBytes(frame);
    if (size == 0) {
        message.emplace<std::monostate>();
        return;
    }
    Head const head(frame);
    auto const header = headerOf(frame.substr(0, size), formatOf(head));
    make(message, [&header] { return OtherReply{header}; });
    kReaders[header.format]({frame.substr(0, size), head, header, how}, message);
}

Message read(std::string_view frame, Reading const& how) {
    auto const begun = [&frame] { return OtherReply{{static_cast<std::uint8_t>(frame.size())}}; };
    Message message(std::in_place_type<OtherReply>, Made<decltype(begun)>{begun});
    readInto(message, frame, how);
    return message;
}

std::uint32_t likelyAddress(std::string_view frame) {
    constexpr std::uint32_t kInField = 1U << 11 | 1U << 17 | 1U << 18; // formats
    auto const size = wholeBytes(frame);
    if (size == 0) return 0;
    Head const head(frame);
    bool const isInField = (kInField >> head.number(1, 5) & 1) != 0;
    return isInField ? head.number(9, 32) : remainderOf(frame.substr(0, size));
}

Message read(Frame const& frame, Reading const& how) { return frame.isModeAc() ? Message() : read(frame.view(), how); }

Message read(modes::ModeSMessage const& message, Reading const& how) {
    return read(std::string_view(message.data()), how);
}

MessageHeader const* headerOf(Message const& message) { return headerIn(message); }

std::optional<MaximumAirspeed> airspeedOfReply(std::uint8_t reply) {
    constexpr unsigned kFirst = 9;
    constexpr std::array<MaximumAirspeed, 6> kAirspeeds{
        {{std::nullopt, 75}, {75, 150}, {150, 300}, {300, 600}, {600, 1200}, {1200, std::nullopt}}};
    if (reply < kFirst || reply >= kFirst + kAirspeeds.size()) return std::nullopt;
    return kAirspeeds[reply - kFirst];
}

} // namespace quorvel::airspace
