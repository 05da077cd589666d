// SPDX-License-Identifier: MIT
#include <modes/adsb_message.h>

#include <modes/log.h>

#include "adsb/payload_fields.h"
#include "adsb/type_code.h"
#include "core/clock.h"
#include "core/hex.h"
#include "core/names.h"

#include <algorithm>

namespace quorvel::modes {

namespace {

std::string const kModule = "ADSBMessage";

NameTable const kTypeNames{
    {"ACID", "POS_GND", "POS_AIR", "AIR_VEL", "TEST", "AC_STATUS", "TG_STATUS", "OP_STATUS"}, "RESERVED"};
NameTable const kTypeFullNames{{"Aircraft Identification", "Surface Position", "Airborne Position",
                                "Airborne Velocities", "Test", "Aircraft Status",
                                "Target State and Status Information", "Aircraft Operation Status"},
                               "Reserved"};
static_assert(decltype(kTypeNames)::size() == ADSBMessage::RESERVED);
static_assert(decltype(kTypeFullNames)::size() == ADSBMessage::RESERVED);

constexpr ADSBMessage::ADSBMessageType kTypes[] = {
    ADSBMessage::RESERVED,                                                                       // 0
    ADSBMessage::ACID,      ADSBMessage::ACID,     ADSBMessage::ACID,     ADSBMessage::ACID,     // 1 to 4
    ADSBMessage::POS_GND,   ADSBMessage::POS_GND,  ADSBMessage::POS_GND,  ADSBMessage::POS_GND,  // 5 to 8
    ADSBMessage::POS_AIR,   ADSBMessage::POS_AIR,  ADSBMessage::POS_AIR,  ADSBMessage::POS_AIR,  // 9 to 12
    ADSBMessage::POS_AIR,   ADSBMessage::POS_AIR,  ADSBMessage::POS_AIR,  ADSBMessage::POS_AIR,  // 13 to 16
    ADSBMessage::POS_AIR,   ADSBMessage::POS_AIR,                                                // 17, 18
    ADSBMessage::AIR_VEL,                                                                        // 19
    ADSBMessage::POS_AIR,   ADSBMessage::POS_AIR,  ADSBMessage::POS_AIR,                         // 20 to 22
    ADSBMessage::TEST,                                                                           // 23
    ADSBMessage::RESERVED,  ADSBMessage::RESERVED, ADSBMessage::RESERVED, ADSBMessage::RESERVED, // 24 to 27
    ADSBMessage::AC_STATUS,                                                                      // 28
    ADSBMessage::TG_STATUS,                                                                      // 29
    ADSBMessage::RESERVED,                                                                       // 30
    ADSBMessage::OP_STATUS,                                                                      // 31
};
static_assert(std::size(kTypes) == 1U << kTypeCodeWidth);

// Both stand in the first five bits: the code itself and the type that it selects.
constexpr PayloadField kType{ADSBMessageField::TYPE, kTypeCodePosition, kTypeCodeWidth};
constexpr PayloadField kTypeCode{ADSBMessageField::TYPECODE, kTypeCodePosition, kTypeCodeWidth};

} // namespace

ADSBMessage::ADSBMessage(ADSBMessageType type)
    : _type(type), _timeStamp(static_cast<std::uint64_t>(clock::nowSeconds()) * 1000) {}

ADSBMessage::~ADSBMessage() = default;

std::string ADSBMessage::description() const {
    return std::string("ADS-B Type-") + static_cast<char>(_typeCode) + " " + typeName() + " Message";
}

bool ADSBMessage::decode(std::string const& me) {
    if (me.size() < kPayloadBytes) return false;
    _data = me.substr(0, kPayloadBytes);
    _typeCode = typeCodeOf(_data);
    if (typeByCode(_typeCode) != _type) {
        Log::log(Log::Error, kModule, std::string("Type code mismatch."));
        return false;
    }
    listField(*this, kType, typeName());
    readNumber(*this, kTypeCode);
    _valid = decodeImpl();
    std::stable_sort(_fields.begin(), _fields.end());
    return _valid;
}

bool ADSBMessage::decode(char const* bytes, std::size_t size) { return decode(std::string(bytes, size)); }

std::string ADSBMessage::dataHexString() const { return hexOfBytes(_data); }

ADSBMessage::ADSBMessageType ADSBMessage::typeByCode(std::uint8_t code) {
    return code < std::size(kTypes) ? kTypes[code] : RESERVED;
}

std::string const& ADSBMessage::typeName(ADSBMessageType type) { return kTypeNames[type]; }

std::string const& ADSBMessage::typeFullName(ADSBMessageType type) { return kTypeFullNames[type]; }

} // namespace quorvel::modes
