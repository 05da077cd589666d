// SPDX-License-Identifier: MIT
#include <modes/adsb_message.h>

#include "adsb/payload_fields.h"
#include "adsb/type_code.h"
#include "core/clock.h"
#include "core/hex.h"
#include "core/log_if_shown.h"
#include "core/names.h"
#include "core/short_bytes.h"

#include <algorithm>

namespace quorvel::modes {

namespace {

std::string const kModule = "ADSBMessage";

NameTable const kTypeNames{
    {"ACID", "POS_GND", "POS_AIR", "AIR_VEL", "TEST", "AC_STATUS", "TG_STATUS", "OP_STATUS"}, "RESERVED"};
NameTable const kTypeFullNames{
    {"Aircraft Identification", "Surface Position", "Airborne Position", "Airborne Velocities", "Test",
        "Aircraft Status", "Target State and Status Information", "Aircraft Operation Status"},
    "Reserved"};
static_assert(decltype(kTypeNames)::size() == ADSBMessage::RESERVED);
static_assert(decltype(kTypeFullNames)::size() == ADSBMessage::RESERVED);

using enum ADSBMessage::ADSBMessageType;

constexpr ADSBMessage::ADSBMessageType kTypes[] = {
    RESERVED,                                                                                 // 0
    ACID, ACID, ACID, ACID,                                                                   // 1 to 4
    POS_GND, POS_GND, POS_GND, POS_GND,                                                       // 5 to 8
    POS_AIR, POS_AIR, POS_AIR, POS_AIR, POS_AIR, POS_AIR, POS_AIR, POS_AIR, POS_AIR, POS_AIR, // 9 to 18
    AIR_VEL,                                                                                  // 19
    POS_AIR, POS_AIR, POS_AIR,                                                                // 20 to 22
    TEST,                                                                                     // 23
    RESERVED, RESERVED, RESERVED, RESERVED,                                                   // 24 to 27
    AC_STATUS,                                                                                // 28
    TG_STATUS,                                                                                // 29
    RESERVED,                                                                                 // 30
    OP_STATUS,                                                                                // 31
};
static_assert(std::size(kTypes) == 1U << kTypeCodeWidth);

std::string typeText(ADSBMessage const& message, PayloadField const&) { return message.typeName(); }

// Both are in the first five bits: the code itself and the type that it selects.
constexpr ListedField kTypeFields[] = {
    {{ADSBMessageField::TYPE, kTypeCodePosition, kTypeCodeWidth}, typeText},
    {{ADSBMessageField::TYPECODE, kTypeCodePosition, kTypeCodeWidth}, numberText},
};

} // namespace

ADSBMessage::ADSBMessage(ADSBMessageType type)
    : _type(type), _timeStamp(static_cast<std::uint64_t>(clock::nowSeconds()) * 1000) {}

ADSBMessage::~ADSBMessage() = default;

std::string ADSBMessage::description() const {
    return std::string("ADS-B Type-") + static_cast<char>(_typeCode) + " " + typeName() + " Message";
}

bool ADSBMessage::decode(std::string const& me) {
    if (me.size() < kPayloadBytes) return false;
    makeListedFields(); // as long as their payload is there
    assignBytes(_data, me.data(), kPayloadBytes);
    _typeCode = typeCodeOf(_data);
    if (typeByCode(_typeCode) != _type) {
        logIfShown(Log::Error, kModule, "Type code mismatch.");
        return false;
    }
    PayloadFields::list(*this, kTypeFields);
    _valid = decodeImpl();
    if (!_fields.empty()) {
        makeListedFields();
        std::stable_sort(_fields.begin(), _fields.end());
    }
    _listedSorted = true;
    return _valid;
}

std::vector<ADSBMessageField> ADSBMessage::fields() const {
    auto fields = _fields;
    appendListedFields(fields);
    return fields;
}

void ADSBMessage::addField(ADSBMessageField const& field) {
    makeListedFields();
    _fields.push_back(field);
}

void ADSBMessage::makeListedFields() {
    if (_listedCount > 0) appendListedFields(_fields);
    _listedCount = 0;
    _listedSorted = false;
}

void ADSBMessage::appendListedFields(std::vector<ADSBMessageField>& fields) const {
    for (std::size_t i = 0; i < _listedCount; ++i) {
        auto const& [first, count] = _listed[i];
        for (auto const* row = first; row != first + count; ++row) {
            auto const& [designator, pos, bits] = row->field;
            fields.emplace_back(designator, pos, bits, row->text(*this, row->field));
        }
    }
    if (_listedSorted) std::stable_sort(fields.begin(), fields.end());
}

bool ADSBMessage::decode(char const* bytes, std::size_t size) { return decode(std::string(bytes, size)); }

std::string ADSBMessage::dataHexString() const { return hexOfBytes(_data); }

ADSBMessage::ADSBMessageType ADSBMessage::typeByCode(std::uint8_t code) {
    return code < std::size(kTypes) ? kTypes[code] : RESERVED;
}

std::string const& ADSBMessage::typeName(ADSBMessageType type) { return kTypeNames[type]; }

std::string const& ADSBMessage::typeFullName(ADSBMessageType type) { return kTypeFullNames[type]; }

} // namespace quorvel::modes
