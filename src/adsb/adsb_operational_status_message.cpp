// SPDX-License-Identifier: MIT
#include <modes/adsb_operational_status_message.h>

#include "adsb/payload_fields.h"
#include "core/log_if_shown.h"

namespace quorvel::modes {

namespace {

std::string const kModule = "ADSBOpStatMsg";

constexpr PayloadField kVersion{ADSBMessageField::VERNUM, 40, 3};
constexpr PayloadField kNicSupplementA{ADSBMessageField::NICA, 43, 1};

constexpr ListedField kFields[] = {
    {kVersion, numberText},
    {kNicSupplementA, numberText},
};

} // namespace

ADSBAircraftOperationalStatusMessage::ADSBAircraftOperationalStatusMessage() : ADSBMessage(OP_STATUS) {}

std::string ADSBAircraftOperationalStatusMessage::description() const {
    return "TC=OP_STAT, VN=" + std::to_string(_versionNumber) + ", NICsa=" + (_nicSupplementA ? "1" : "0");
}

bool ADSBAircraftOperationalStatusMessage::decodeImpl() {
    if (!hasPayload(*this)) return false;
    Payload const payload(*this);
    _versionNumber = payload.read<std::uint8_t>(kVersion);
    if (_versionNumber == 0) {
        logIfShown(Log::Error, kModule, "MOPS Version 0 detected.");
        return false;
    }
    if (_versionNumber >= MOPS_UNKNOWN) {
        logIfShown(Log::Error, kModule, "Unsupported MOPS Version %u detected.", _versionNumber);
    }
    _nicSupplementA = payload.flag(kNicSupplementA);
    PayloadFields::list(*this, kFields);
    return true;
}

MOPSVersion ADSBAircraftOperationalStatusMessage::version() const {
    return _versionNumber < MOPS_UNKNOWN ? static_cast<MOPSVersion>(_versionNumber) : MOPS_UNKNOWN;
}

} // namespace quorvel::modes
