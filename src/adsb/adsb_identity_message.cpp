// SPDX-License-Identifier: MIT
#include <modes/adsb_identity_message.h>

#include "adsb/payload_fields.h"

#include <iterator>
#include <string_view>

namespace quorvel::modes {

namespace {

constexpr PayloadField kCategory{ADSBMessageField::EMTCAT, 5, 3};

constexpr std::uint8_t kFirstCharacterPosition = 8;
constexpr std::uint8_t kCharacterBits = 6;
constexpr std::size_t kCharacters = 8;

constexpr PayloadField characterField(std::size_t index) {
    return {static_cast<ADSBMessageField::Designator>(ADSBMessageField::ACIDCHAR1 + index),
        static_cast<std::uint8_t>(kFirstCharacterPosition + kCharacterBits * index), kCharacterBits};
}

// RTCA DO-260B, table 2-18; codes without a character show as "?".
constexpr std::string_view kAlphabet = "?ABCDEFGHIJKLMNOPQRSTUVWXYZ????? ???????????????0123456789??????";
static_assert(kAlphabet.size() == 1U << kCharacterBits);

char characterOf(Payload const& payload, PayloadField const& field) { return kAlphabet[payload.read(field)]; }

std::string characterText(ADSBMessage const& message, PayloadField const& field) {
    return std::string(1, characterOf(Payload(message), field));
}

constexpr ListedField kFields[] = {
    {kCategory, numberText},
    {characterField(0), characterText},
    {characterField(1), characterText},
    {characterField(2), characterText},
    {characterField(3), characterText},
    {characterField(4), characterText},
    {characterField(5), characterText},
    {characterField(6), characterText},
    {characterField(7), characterText},
};
static_assert(std::size(kFields) == 1 + kCharacters);

} // namespace

ADSBIdentityMessage::ADSBIdentityMessage() : ADSBMessage(ACID) {}

std::string ADSBIdentityMessage::description() const {
    return "TC=ACID, EC=" + std::to_string(_emitterCategory) + ", CS=" + _callsign;
}

bool ADSBIdentityMessage::decodeImpl() {
    if (!hasPayload(*this)) return false;
    Payload const payload(*this);
    _emitterCategory = payload.read<std::uint8_t>(kCategory);
    for (std::size_t i = 0; i < kCharacters; ++i) _callsign[i] = characterOf(payload, characterField(i));
    PayloadFields::list(*this, kFields);
    return true;
}

} // namespace quorvel::modes
