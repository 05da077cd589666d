// SPDX-License-Identifier: MIT
#include <modes/adsb_aircraft_status_message.h>

#include "adsb/payload_fields.h"
#include "core/log_if_shown.h"
#include "core/text.h"

namespace quorvel::modes {

namespace {

std::string const kModule = "ADSBAcStatMsg";

constexpr PayloadField kSubtype{ADSBMessageField::ACSTYPE, 5, 3};
constexpr PayloadField kEmergencyState{ADSBMessageField::EMGSTATE, 8, 3};
constexpr PayloadField kModeA{ADSBMessageField::MODEA, 11, 13};

NameTable const kSubtypeNames{{"NO_INFO", "EMERGENCY", "TCAS_RA"}, "--"};
NameTable const kEmergencyStateNames{
    {"NO_EMG", "EMERGENCY", "MEDICAL", "MIN_FUEL", "NO_COMM", "HIJACK", "AC_DOWNED", "UNDEFINED"}, "--"};

// Deliberate and visible to hosts: the code is read from the first two payload bytes, not from the field's own bits.
unsigned int modeAFromFirstBytes(Payload const& payload) {
    constexpr PayloadField kHighBits{ADSBMessageField::MODEA, 12, 4};
    constexpr PayloadField kLowBits{ADSBMessageField::MODEA, 0, 8};
    return payload.read(kHighBits) << 8 | payload.read(kLowBits);
}

std::string modeAText(unsigned int code) { return formatted("%.4o", code); }

// The state that the message holds: it may be an earlier one, for only one subtype reports it.
std::string emergencyStateText(ADSBMessage const& message, PayloadField const&) {
    auto const& status = static_cast<ADSBAircraftStatusMessage const&>(message);
    return kEmergencyStateNames[static_cast<std::size_t>(status.emergencyState())];
}

std::string modeAFieldText(ADSBMessage const& message, PayloadField const&) {
    return modeAText(modeAFromFirstBytes(Payload(message)));
}

constexpr ListedField kStatusFields[] = {
    {kSubtype, nameText<kSubtypeNames>},
    {kEmergencyState, emergencyStateText},
};
constexpr ListedField kListedModeA{kModeA, modeAFieldText};

} // namespace

ADSBAircraftStatusMessage::ADSBAircraftStatusMessage() : ADSBMessage(AC_STATUS) {}

std::string ADSBAircraftStatusMessage::description() const {
    std::string text = "TC=AC_STATUS";
    if (_subtype == Subtype::EMERGENCY) {
        text += ", ST=EMG, EMG=" + std::to_string(static_cast<unsigned int>(_emergencyState));
    }
    return text;
}

bool ADSBAircraftStatusMessage::decodeImpl() {
    if (!hasPayload(*this)) return false;

    Payload const payload(*this);
    auto const code = payload.read(kSubtype);
    if (code >= static_cast<unsigned int>(Subtype::UNKNOWN)) {
        logIfShown(Log::Error, kModule, "Unknown Subtype=%u.", code);
        _subtype = Subtype::UNKNOWN;
        return false;
    }
    _subtype = static_cast<Subtype>(code);
    if (_subtype == Subtype::EMERGENCY) {
        _emergencyState = payload.read<EmergencyState>(kEmergencyState);
    } else {
        logIfShown(Log::Error, kModule, "Unsupported subtype %u detected.", code);
    }
    PayloadFields::list(*this, kStatusFields);
    return true;
}

std::string ADSBAircraftStatusMessageV2::description() const {
    return ADSBAircraftStatusMessage::description() + ", MA=" + modeAOctString();
}

bool ADSBAircraftStatusMessageV2::decodeImpl() {
    if (!ADSBAircraftStatusMessage::decodeImpl()) return false;
    if (subtype() == Subtype::TCAS_RA) {
        logIfShown(Log::Warning, kModule, "Unsupported TCAS RA message detected.");
        return false;
    }
    if (subtype() == Subtype::EMERGENCY) {
        _modeACode = modeAFromFirstBytes(Payload(*this));
        PayloadFields::list(*this, kListedModeA);
    }
    return true;
}

std::string ADSBAircraftStatusMessageV2::modeAOctString() const { return modeAText(_modeACode); }

} // namespace quorvel::modes
