// SPDX-License-Identifier: MIT
#include <modes/adsb_decoder.h>

#include "adsb/message_class.h"
#include "adsb/type_code.h"
#include "core/log_if_shown.h"

namespace quorvel::modes {

namespace {

std::string const kModule = "ADSBDecoder";

} // namespace

ADSBMessage::ADSBMessageType decodableType(std::string const& me) {
    if (me.size() < kPayloadBytes) return ADSBMessage::RESERVED;
    auto const typeCode = typeCodeOf(me);
    auto const type = ADSBMessage::typeByCode(typeCode);
    if (type == ADSBMessage::RESERVED) {
        logIfShown(Log::Warning, kModule, "Unsupported type code = %u (%s).", typeCode,
            ADSBMessage::typeFullName(type).c_str());
    }
    return type;
}

ADSBDecoder::ADSBDecoder() { logIfShown(Log::Info, kModule, "Initialized."); }

std::shared_ptr<ADSBMessage> ADSBDecoder::decode(MOPSVersion version, std::string const& me) const {
    return withMessageClass(decodableType(me), version, [&me]<class Message>() -> std::shared_ptr<ADSBMessage> {
        auto message = std::make_shared<Message>();
        return message->decode(me) ? message : nullptr;
    });
}

} // namespace quorvel::modes
