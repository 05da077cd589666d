// SPDX-License-Identifier: MIT
#include <modes/modes_message.h>

#include "core/clock.h"
#include "core/hex.h"
#include "core/names.h"
#include "core/short_bytes.h"
#include "core/text.h"
#include "modes/parity.h"
#include "modes/repair.h"

namespace quorvel::modes {

namespace {

NameTable const kTypeNames{{"Uplink"}, "Downlink"};

// Parities and addresses are shown with six digits at most, and with no more zeros than it takes for two
// digits.
std::string sixHexDigits(unsigned int value) { return hexOfNumber(value).substr(0, 6); }

} // namespace

ModeSMessage::ModeSMessage(ModeSMsgType type)
    : _modeSMsgType(type), _timeStamp(static_cast<unsigned long long>(clock::nowSeconds()) * 1000) {}

ModeSMessage::~ModeSMessage() = default;

std::string ModeSMessage::description() const { return "Mode-S " + modeSMsgTypeName() + " Format Message"; }

bool ModeSMessage::decode(std::string const& bytes) {
    assignBytes(_data, bytes.data(), bytes.size());
    auto const frameBits = bits();
    if (_data.size() < frameBits / 8) {
        _valid = false;
        return false;
    }
    _calculatedParity = parity::remainder(_data, frameBits);
    _valid = decodeImpl();
    return _valid;
}

bool ModeSMessage::decode(char const* bytes, unsigned long long size) { return decode(bytesAt(bytes, size)); }

std::string ModeSMessage::dataHexString() const { return hexOfBytes(_data); }

std::string const& ModeSMessage::modeSMsgTypeName() const { return kTypeNames[_modeSMsgType]; }

unsigned char ModeSMessage::size() const { return bits() / 8; }

std::string ModeSMessage::calculatedParityHexString() const { return sixHexDigits(_calculatedParity); }

std::string ModeSMessage::icaoAddressHexString() const { return sixHexDigits(_icaoAddress); }

unsigned int ModeSMessage::calculateParity() const { return calculateParity(_data); }

unsigned int ModeSMessage::calculateParity(std::string const& bytes) const { return parity::remainder(bytes, bits()); }

bool ModeSMessage::fixError1Bit(std::string& bytes, unsigned char& pos, unsigned int parity) const {
    if (8 * bytes.size() < bits()) return false;
    auto const damaged = repair::findBit(calculateParity(bytes) ^ parity, bits());
    if (!damaged) return false;
    repair::invertBit(bytes, *damaged);
    pos = static_cast<unsigned char>(*damaged);
    return true;
}

bool ModeSMessage::fixError2Bits(
    std::string& bytes, unsigned char& pos1, unsigned char& pos2, unsigned int parity) const {
    if (8 * bytes.size() < bits()) return false;
    auto const damaged = repair::findPair(calculateParity(bytes) ^ parity, bits());
    if (!damaged) return false;
    for (auto const position : {damaged->first, damaged->second}) repair::invertBit(bytes, position);
    pos1 = static_cast<unsigned char>(damaged->first);
    pos2 = static_cast<unsigned char>(damaged->second);
    return true;
}

} // namespace quorvel::modes
