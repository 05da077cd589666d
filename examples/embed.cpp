// SPDX-License-Identifier: MIT
// Reads AVR lines from standard input and prints the aircraft that sent them.
#include <modes/modes.h>

#include <iostream>

using namespace quorvel::modes;

int main() {
    ModeSDecoder decoder;
    ADSBTracker tracker;

    for (std::string line; std::getline(std::cin, line);) {
        std::string buffer = line + "\n";
        for (auto const& frame : ModeSEncapsulation::extract(buffer, ModeSEncapsulation::Avr))
            tracker.procModeSMsg(decoder.decode(ModeSMessage::DOWNLINK, frame));
    }

    for (auto const& target : tracker.allTargets()) {
        auto const report = target->report();
        std::cout << report->icaoAddressString() << "  " << report->callsign() << "  "
                  << (report->positionValid() ? report->positionString() : "no position") << "\n";
    }
}
