// SPDX-License-Identifier: MIT
#include <modes/modes_message_field.h>

#include "core/bits.h"
#include "core/hex.h"
#include "core/names.h"
#include "core/short_bytes.h"
#include "core/text.h"
#include "core/wire.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace quorvel::modes {

namespace {

NameTable const kNames{
    {"AA", "AC", "AF", "AP", "CA", "CF", "DR", "FS", "ID", "MB", "ME", "MV", "PI", "UM", "VS"}, "--"};

NameTable const kFullNames{
    {"Address announced", "Altitude code", "Application field", "Address/parity", "Capability", "Control field",
        "Data selector", "Flight status", "Identity", "Message, Comm-B", "Message, extended squitter", "Message, ACAS",
        "Parity/interrogator identifier", "Utility message", "Vertical status"},
    "Unknown field"};
static_assert(decltype(kNames)::size() == ModeSMessageField::VS + 1);
static_assert(decltype(kFullNames)::size() == ModeSMessageField::VS + 1);

NameTable const kFlightStatusNames{{"AIR", "GND", "AIR, ALERT", "GND, ALERT", "ALERT, SPI", "SPI"}, "UNKNOWN"};
NameTable const kVerticalStatusNames{{"AIR", "GND"}, "UNKNOWN"};

// The positions of the fields in the replies. Parity ends the frame, short or long.
constexpr unsigned kAfterFormat = wire::kFormatBits;
constexpr unsigned kAddressPosition = wire::kAddressAt;
constexpr unsigned kCodePosition = 19;
constexpr unsigned kMessagePosition = wire::kPayloadAt;
constexpr unsigned kShortParityPosition = 8 * wire::kShortFrameBytes - wire::kParityBits;
constexpr unsigned kLongParityPosition = 8 * wire::kLongFrameBytes - wire::kParityBits;

// The altitude code without its M and Q bits.
constexpr unsigned kMetricBit = 25;
constexpr unsigned kResolutionBit = 27;
constexpr unsigned kAltitudeBits[] = {19, 20, 21, 22, 23, 24, 26, 28, 29, 30, 31};
constexpr ScatteredBits kAltitude(kAltitudeBits);

// Digits A, B, C, D of the identity in the order they are read out, each from its 4, 2 and 1 bit.
constexpr unsigned kIdentityBits[] = {24, 22, 20, 30, 28, 26, 23, 21, 19, 31, 29, 27};
constexpr ScatteredBits kIdentity(kIdentityBits);

constexpr std::size_t kMessageStart = kMessagePosition / 8; // bytes
constexpr std::size_t kMessageSize = wire::kPayloadBytes;

bool covers(std::string_view frame, unsigned position, unsigned width) { return position + width <= 8 * frame.size(); }

// The value of a field, if it occurs at `position` and the frame is long enough. The positions are constants,
// so that each becomes a few loads.
template <unsigned... Positions, class Value>
bool readField(std::string_view frame, unsigned position, unsigned width, Value& value) {
    auto const readAt = [&](unsigned known) {
        if (position != known || !covers(frame, known, width)) return false;
        value = bits<Value>(frame, known, width);
        return true;
    };
    return (readAt(Positions) || ...);
}

bool hasCode(std::string_view frame, unsigned position, unsigned width) {
    return position == kCodePosition && covers(frame, position, width);
}

// The message bytes of a long reply; fewer if the frame ends early.
bool storeMessage(std::string const& frame, unsigned position, std::string& message) {
    if (position != kMessagePosition) return false;
    auto const start = std::min(frame.size(), kMessageStart);
    assignBytes(message, frame.data() + start, std::min(frame.size() - start, kMessageSize));
    return true;
}

} // namespace

ModeSMessageField::ModeSMessageField(Designator designator) : _designator(designator) {}

std::string ModeSMessageField::description() const { return name() + ":" + fullName(); }

std::string const& ModeSMessageField::designatorName(Designator designator) { return kNames[designator]; }

std::string const& ModeSMessageField::designatorFullName(Designator designator) { return kFullNames[designator]; }

bool ModeSMessageField::decode(std::string const& data, unsigned char pos) {
    if (!covers(data, pos, bits())) return false;
    _pos = pos;
    _valid = decodeImpl(data, pos);
    return _valid;
}

bool ModeSMessageField::decode(char const* data, unsigned long long size, unsigned char pos) {
    return decode(bytesAt(data, size), pos);
}

ModeSMessageFieldAA::ModeSMessageFieldAA() : ModeSMessageField(AA) {}
std::string ModeSMessageFieldAA::description() const { return icaoAddressHexString(); }
bool ModeSMessageFieldAA::decodeImpl(std::string const& data, unsigned char pos) {
    return readField<kAddressPosition>(data, pos, ModeSMessageFieldAA::bits(), _icaoAddress);
}
std::string ModeSMessageFieldAA::icaoAddressHexString() const { return hexOfNumber(_icaoAddress); }

ModeSMessageFieldAC::ModeSMessageFieldAC() : ModeSMessageField(AC) {}
std::string ModeSMessageFieldAC::description() const { return std::to_string(_altitude); }
bool ModeSMessageFieldAC::decodeImpl(std::string const& data, unsigned char pos) {
    if (!hasCode(data, pos, ModeSMessageFieldAC::bits())) return false;
    _altitudeUnit = bit(data, kMetricBit) ? 1 : 0;
    _altitudeResolution = bit(data, kResolutionBit) ? 25 : 100;
    _altitude = static_cast<int>(kAltitude.of(data) * _altitudeResolution) - 1000;
    return true;
}

ModeSMessageFieldAF::ModeSMessageFieldAF() : ModeSMessageField(AF) {}
std::string ModeSMessageFieldAF::description() const { return std::to_string(_code); }
bool ModeSMessageFieldAF::decodeImpl(std::string const& data, unsigned char pos) {
    return readField<kAfterFormat>(data, pos, ModeSMessageFieldAF::bits(), _code);
}

ModeSMessageFieldAP::ModeSMessageFieldAP() : ModeSMessageField(AP) {}
std::string ModeSMessageFieldAP::description() const { return addressParityHexString(); }
bool ModeSMessageFieldAP::decodeImpl(std::string const& data, unsigned char pos) {
    return readField<kShortParityPosition, kLongParityPosition>(data, pos, ModeSMessageFieldAP::bits(), _addressParity);
}
std::string ModeSMessageFieldAP::addressParityHexString() const { return hexOfNumber(_addressParity); }
unsigned int ModeSMessageFieldAP::setParity(unsigned int parity) {
    _parity = parity;
    _icaoAddress = parity ^ _addressParity;
    return _icaoAddress;
}

ModeSMessageFieldCA::ModeSMessageFieldCA() : ModeSMessageField(CA) {}
std::string ModeSMessageFieldCA::description() const { return std::to_string(_capability); }
bool ModeSMessageFieldCA::decodeImpl(std::string const& data, unsigned char pos) {
    return readField<kAfterFormat>(data, pos, ModeSMessageFieldCA::bits(), _capability);
}

ModeSMessageFieldCF::ModeSMessageFieldCF() : ModeSMessageField(CF) {}
std::string ModeSMessageFieldCF::description() const { return std::to_string(_code); }
bool ModeSMessageFieldCF::decodeImpl(std::string const& data, unsigned char pos) {
    return readField<kAfterFormat>(data, pos, ModeSMessageFieldCF::bits(), _code);
}

ModeSMessageFieldFS::ModeSMessageFieldFS() : ModeSMessageField(FS) {}
std::string ModeSMessageFieldFS::description() const { return kFlightStatusNames[_flightStatus]; }
bool ModeSMessageFieldFS::decodeImpl(std::string const& data, unsigned char pos) {
    return readField<kAfterFormat>(data, pos, ModeSMessageFieldFS::bits(), _flightStatus);
}

ModeSMessageFieldID::ModeSMessageFieldID() : ModeSMessageField(ID) {}
std::string ModeSMessageFieldID::description() const { return formatted("%.4o", _identity); }
bool ModeSMessageFieldID::decodeImpl(std::string const& data, unsigned char pos) {
    if (!hasCode(data, pos, ModeSMessageFieldID::bits())) return false;
    _identity = kIdentity.of(data);
    return true;
}

ModeSMessageFieldMB::ModeSMessageFieldMB() : ModeSMessageField(MB) {}
std::string ModeSMessageFieldMB::description() const { return dataHexString(); }
bool ModeSMessageFieldMB::decodeImpl(std::string const& data, unsigned char pos) {
    return storeMessage(data, pos, _data);
}
std::string ModeSMessageFieldMB::dataHexString() const { return hexOfBytes(_data); }

ModeSMessageFieldME::ModeSMessageFieldME() : ModeSMessageField(ME) {}
std::string ModeSMessageFieldME::description() const { return dataHexString(); }
bool ModeSMessageFieldME::decodeImpl(std::string const& data, unsigned char pos) {
    return storeMessage(data, pos, _data);
}
std::string ModeSMessageFieldME::dataHexString() const { return hexOfBytes(_data); }

ModeSMessageFieldMV::ModeSMessageFieldMV() : ModeSMessageField(MV) {}
std::string ModeSMessageFieldMV::description() const { return dataHexString(); }
bool ModeSMessageFieldMV::decodeImpl(std::string const& data, unsigned char pos) {
    return storeMessage(data, pos, _data);
}
std::string ModeSMessageFieldMV::dataHexString() const { return hexOfBytes(_data); }

ModeSMessageFieldPI::ModeSMessageFieldPI() : ModeSMessageField(PI) {}
std::string ModeSMessageFieldPI::description() const { return parityInterrogatorIdHexString(); }
bool ModeSMessageFieldPI::decodeImpl(std::string const& data, unsigned char pos) {
    return readField<kShortParityPosition, kLongParityPosition>(
        data, pos, ModeSMessageFieldPI::bits(), _parityInterrogatorId);
}
std::string ModeSMessageFieldPI::parityInterrogatorIdHexString() const { return hexOfNumber(_parityInterrogatorId); }
void ModeSMessageFieldPI::setParity(unsigned int parity) {
    _parity = parity;
    _interrogatorId = parity ^ _parityInterrogatorId;
}
unsigned int ModeSMessageFieldPI::setInterrogatorId(unsigned int interrogatorId) {
    _interrogatorId = interrogatorId;
    _parity = interrogatorId ^ _parityInterrogatorId;
    return _parity;
}

ModeSMessageFieldVS::ModeSMessageFieldVS() : ModeSMessageField(VS) {}
std::string ModeSMessageFieldVS::description() const { return kVerticalStatusNames[_verticalStatus]; }
bool ModeSMessageFieldVS::decodeImpl(std::string const& data, unsigned char pos) {
    return readField<kAfterFormat>(data, pos, ModeSMessageFieldVS::bits(), _verticalStatus);
}

} // namespace quorvel::modes
