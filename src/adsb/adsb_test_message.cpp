// SPDX-License-Identifier: MIT
#include <modes/adsb_test_message.h>

#include "adsb/payload_fields.h"
#include "core/hex.h"
#include "core/log_if_shown.h"

namespace quorvel::modes {

namespace {

std::string const kModule = "ADSBTestMsg";

constexpr PayloadField kSubtype{ADSBMessageField::TSTTYPE, 5, 3};
constexpr PayloadField kData{ADSBMessageField::TSTDATA, 8, 48};

std::string testDataOf(ADSBMessage const& message) { return message.data().substr(kData.pos / 8, kData.bits / 8); }

std::string dataText(ADSBMessage const& message, PayloadField const&) { return hexOfBytes(testDataOf(message)); }

constexpr ListedField kFields[] = {
    {kSubtype, numberText},
    {kData, dataText},
};

} // namespace

ADSBTestMessage::ADSBTestMessage() : ADSBMessage(TEST) {}

std::string ADSBTestMessage::description() const { return std::string("TC=TEST, ST=") + static_cast<char>(_subtype); }

bool ADSBTestMessage::decodeImpl() {
    if (!hasPayload(*this)) return false;
    _subtype = Payload(*this).read<std::uint8_t>(kSubtype);
    if (_subtype != 0) logIfShown(Log::Error, kModule, "Unknown Subtype=%u.", _subtype);
    _testData = testDataOf(*this);
    PayloadFields::list(*this, kFields);
    return true;
}

} // namespace quorvel::modes
