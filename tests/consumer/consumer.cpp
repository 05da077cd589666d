// SPDX-License-Identifier: MIT
#include <modes/modes.h>

#include <iostream>

// Touches each part of the library once; 0 when all of them answer.
int main() {
    using namespace quorvel::modes;
    Log::setShowLevel(Log::Error);

    std::string buffer = "*8D4840D6202CC371C32CE0576098;\n";
    auto const frames = ModeSEncapsulation::extract(buffer, ModeSEncapsulation::Avr);
    ModeSDecoder decoder;
    ADSBTracker tracker;
    auto const target = tracker.procModeSMsg(decoder.decode(ModeSMessage::DOWNLINK, frames.at(0)));
    if (!target || target->callsign() != "KLM1023 ") return 1;

    auto const message = tracker.decodeADSBMsg(0x4840D6, "\x20\x2C\xC3\x71\xC3\x2C\xE0");
    if (!std::dynamic_pointer_cast<ADSBIdentityMessage>(message)) return 2;
    if (target->report()->toHtml("").find("4840D6") == std::string::npos) return 3;
    if (html::Document("title").toString().find("title") == std::string::npos) return 4;
    if (cprNLFunction(0.0) != 59) return 5;

    std::cout << Trevallo().version() << "\n";
    return 0;
}
