// SPDX-License-Identifier: MIT
// Tracks the aircraft that sent AVR lines.
#include <modes/modes.h>

#include <cmath>
#include <iomanip>
#include <iostream>

using namespace quorvel::modes;

void print(ADSBTarget const& target) {
    std::cout << std::setw(4) << target.trackId() << "  " << std::hex << std::uppercase << std::setfill('0')
              << std::setw(6) << target.icaoAddr() << std::dec << std::setfill(' ') << "  " << std::setw(8)
              << target.callsign();
    if (target.altitudeBaroValid()) std::cout << std::setw(7) << target.altitudeBaro() << " ft";
    if (target.groundSpeedValid()) std::cout << std::setw(5) << std::lround(target.groundSpeed()) << " kt";
    if (target.positionValid()) {
        std::cout << std::fixed << std::setprecision(4) << std::setw(10) << target.latitude() << std::setw(10)
                  << target.longitude();
    }
    std::cout << "\n";
}

int main() {
    ModeSDecoder decoder;
    ADSBTracker tracker;

    for (std::string line; std::getline(std::cin, line);) {
        std::string buffer = line + "\n";
        for (auto const& frame : ModeSEncapsulation::extract(buffer, ModeSEncapsulation::Avr)) {
            tracker.procModeSMsg(decoder.decode(ModeSMessage::DOWNLINK, frame));
        }
    }
    for (auto const& target : tracker.allTargets()) print(*target);
}
