// SPDX-License-Identifier: MIT
#include <modes/adsb_target_status_message.h>

#include "adsb/payload_fields.h"
#include "core/log_if_shown.h"

namespace quorvel::modes {

namespace {

std::string const kModule = "ADSBTgStatMsg";

constexpr PayloadField kSubtype{ADSBMessageField::TGSTYPE, 5, 2};
constexpr PayloadField kSilSupplement{ADSBMessageField::SILSUPP, 7, 1};
constexpr PayloadField kNacp{ADSBMessageField::NACP, 39, 4};
constexpr PayloadField kNicBaro{ADSBMessageField::NICBARO, 43, 1};
constexpr PayloadField kSil{ADSBMessageField::SIL, 44, 2};

constexpr ListedField kFields[] = {
    {kSubtype, numberText},
    {kNacp, numberText},
    {kNicBaro, numberText},
    {kSil, numberText},
};
constexpr ListedField kListedSilSupplement{kSilSupplement, numberText};

} // namespace

ADSBTargetStatusMessage::ADSBTargetStatusMessage() : ADSBMessage(TG_STATUS) {}

std::string ADSBTargetStatusMessage::description() const {
    return "TC=TG_STATUS, ST=" + std::to_string(_subtype) + ", NACp=" + std::to_string(_nacp) +
           ", NICbaro=" + std::to_string(_nicBaro) + ", SIL=" + std::to_string(_sil);
}

bool ADSBTargetStatusMessage::decodeImpl() {
    if (!hasPayload(*this)) return false;
    Payload const payload(*this);
    _subtype = payload.read<std::uint8_t>(kSubtype);
    if (_subtype > 1) {
        logIfShown(Log::Error, kModule, "Unknown Subtype=%u.", _subtype);
        return false;
    }
    _nacp = payload.read<std::uint8_t>(kNacp);
    _nicBaro = payload.read<std::uint8_t>(kNicBaro);
    _sil = payload.read<std::uint8_t>(kSil);
    PayloadFields::list(*this, kFields);
    return true;
}

std::string ADSBTargetStatusMessageV2::description() const {
    return ADSBTargetStatusMessage::description() + ", SILsupp=" + (_silSupp ? "1" : "0");
}

bool ADSBTargetStatusMessageV2::decodeImpl() {
    if (!ADSBTargetStatusMessage::decodeImpl() || subtype() != 1) return false;
    _silSupp = Payload(*this).flag(kSilSupplement);
    PayloadFields::list(*this, kListedSilSupplement);
    return true;
}

} // namespace quorvel::modes
