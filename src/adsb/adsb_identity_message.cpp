// SPDX-License-Identifier: MIT
#include <modes/adsb_identity_message.h>

#include "adsb/payload_fields.h"

#include <string_view>

namespace quorvel::modes {

namespace {

constexpr PayloadField kCategory{ADSBMessageField::EMTCAT, 5, 3};

constexpr std::uint8_t kFirstCharacterPosition = 8;
constexpr std::uint8_t kCharacterBits = 6;

// RTCA DO-260B, table 2-18; codes without a character show as "?".
constexpr std::string_view kCharacters = "?ABCDEFGHIJKLMNOPQRSTUVWXYZ????? ???????????????0123456789??????";
static_assert(kCharacters.size() == 1U << kCharacterBits);

PayloadField characterField(std::size_t index) {
    return {static_cast<ADSBMessageField::Designator>(ADSBMessageField::ACIDCHAR1 + index),
            static_cast<std::uint8_t>(kFirstCharacterPosition + kCharacterBits * index), kCharacterBits};
}

} // namespace

ADSBIdentityMessage::ADSBIdentityMessage() : ADSBMessage(ACID) {}

std::string ADSBIdentityMessage::description() const {
    return "TC=ACID, EC=" + std::to_string(_emitterCategory) + ", CS=" + _callsign;
}

bool ADSBIdentityMessage::decodeImpl() {
    if (!hasPayload(*this)) return false;
    _emitterCategory = readNumber<std::uint8_t>(*this, kCategory);
    for (std::size_t i = 0; i < _callsign.size(); ++i) {
        auto const field = characterField(i);
        _callsign[i] = kCharacters[peekField(*this, field)];
        listField(*this, field, std::string(1, _callsign[i]));
    }
    return true;
}

} // namespace quorvel::modes
