// SPDX-License-Identifier: MIT
#include <modes/adsb_test_message.h>

#include <modes/log.h>

#include "adsb/payload_fields.h"
#include "core/hex.h"

namespace quorvel::modes {

namespace {

std::string const kModule = "ADSBTestMsg";

constexpr PayloadField kSubtype{ADSBMessageField::TSTTYPE, 5, 3};
constexpr PayloadField kData{ADSBMessageField::TSTDATA, 8, 48};

} // namespace

ADSBTestMessage::ADSBTestMessage() : ADSBMessage(TEST) {}

std::string ADSBTestMessage::description() const {
    return std::string("TC=TEST, ST=") + static_cast<char>(_subtype);
}

bool ADSBTestMessage::decodeImpl() {
    if (!hasPayload(*this)) return false;
    _subtype = readNumber<std::uint8_t>(*this, kSubtype);
    if (_subtype != 0) Log::log(Log::Error, kModule, "Unknown Subtype=%u.", _subtype);
    _testData = data().substr(kData.pos / 8, kData.bits / 8);
    listField(*this, kData, hexOfBytes(_testData));
    return true;
}

} // namespace quorvel::modes
