// SPDX-License-Identifier: MIT
#include <modes/adsb_operational_status_message.h>

#include <modes/log.h>

#include "adsb/payload_fields.h"

namespace quorvel::modes {

namespace {

std::string const kModule = "ADSBOpStatMsg";

constexpr PayloadField kVersion{ADSBMessageField::VERNUM, 40, 3};
constexpr PayloadField kNicSupplementA{ADSBMessageField::NICA, 43, 1};

} // namespace

ADSBAircraftOperationalStatusMessage::ADSBAircraftOperationalStatusMessage() : ADSBMessage(OP_STATUS) {}

std::string ADSBAircraftOperationalStatusMessage::description() const {
    return "TC=OP_STAT, VN=" + std::to_string(_versionNumber) + ", NICsa=" + (_nicSupplementA ? "1" : "0");
}

bool ADSBAircraftOperationalStatusMessage::decodeImpl() {
    if (!hasPayload(*this)) return false;
    _versionNumber = peekField<std::uint8_t>(*this, kVersion);
    if (_versionNumber == 0) {
        Log::log(Log::Error, kModule, std::string("MOPS Version 0 detected."));
        return false;
    }
    if (_versionNumber >= MOPS_UNKNOWN) {
        Log::log(Log::Error, kModule, "Unsupported MOPS Version %u detected.", _versionNumber);
    }
    listField(*this, kVersion, std::to_string(_versionNumber));
    _nicSupplementA = readFlag(*this, kNicSupplementA);
    return true;
}

MOPSVersion ADSBAircraftOperationalStatusMessage::version() const {
    return _versionNumber < MOPS_UNKNOWN ? static_cast<MOPSVersion>(_versionNumber) : MOPS_UNKNOWN;
}

} // namespace quorvel::modes
