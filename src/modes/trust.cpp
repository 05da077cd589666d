// SPDX-License-Identifier: MIT
#include "modes/trust.h"

namespace quorvel::modes {

namespace {

constexpr unsigned int kAddressTimeout = 600;     // s
constexpr unsigned int kInterrogatorTimeout = 60; // s
constexpr unsigned int kTrustedReplies = 10;      // that make an interrogator trusted
constexpr unsigned int kIdentities = 4096;        // codes of four octal digits

bool isFresh(std::int64_t time, unsigned int timeout, std::int64_t now) { return time + timeout >= now; }

} // namespace

Trust::Confidence Trust::gradeSquitter(unsigned int address, std::int64_t now) {
    confirm(address, now);
    return ModeSMessage::HIGH;
}

Trust::Confidence Trust::gradeAltitude(unsigned int address, bool isMetric, std::int64_t now) {
    auto const confidence = confirmIfKnown(address, now) ? ModeSMessage::HIGH : ModeSMessage::LOW;
    return isMetric ? ModeSMessage::NONE : confidence;
}

Trust::Confidence Trust::gradeIdentity(unsigned int address, unsigned int identity, std::int64_t now) {
    if (confirmIfKnown(address, now)) return ModeSMessage::HIGH;
    return identity < kIdentities ? ModeSMessage::LOW : ModeSMessage::NONE;
}

Trust::Confidence Trust::gradeAllCall(unsigned int address, unsigned int interrogator, std::int64_t now) {
    if (interrogator >= _interrogators.size()) return ModeSMessage::NONE;
    auto& record = _interrogators[interrogator];
    bool const isCurrent = record && isFresh(record->time, kInterrogatorTimeout, now);
    bool const isKnown = confirmIfKnown(address, now);
    if (!isKnown) {
        if (!isCurrent || record->counter < kTrustedReplies) return ModeSMessage::NONE;
        confirm(address, now);
    }
    if (!isCurrent) {
        record = {now, 1};
        return ModeSMessage::LOW;
    }
    record->time = now;
    ++record->counter;
    bool const isTrusted = !isKnown || interrogator == 0 || record->counter >= kTrustedReplies;
    return isTrusted ? ModeSMessage::HIGH : ModeSMessage::MEDIUM;
}

// Anyone can send squitters with any address. What is stale makes room before the memory grows.
void Trust::confirm(unsigned int address, std::int64_t now) {
    if (auto* confirmed = _addresses.find(address)) {
        *confirmed = now;
        return;
    }
    if (_addresses.isFull()) {
        _addresses.eraseIf([now](auto confirmed) { return !isFresh(confirmed, kAddressTimeout, now); });
    }
    _addresses[address] = now;
}

bool Trust::confirmIfKnown(unsigned int address, std::int64_t now) {
    auto* confirmed = _addresses.find(address);
    if (!confirmed || !isFresh(*confirmed, kAddressTimeout, now)) return false;
    *confirmed = now;
    return true;
}

} // namespace quorvel::modes
