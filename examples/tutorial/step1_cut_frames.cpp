// SPDX-License-Identifier: MIT
// Cuts frames out of AVR lines.
#include <modes/modes.h>

#include <iostream>

using namespace quorvel::modes;

int main() {
    unsigned int frames = 0;

    for (std::string line; std::getline(std::cin, line);) {
        std::string buffer = line + "\n";
        for (auto const& frame : ModeSEncapsulation::extract(buffer, ModeSEncapsulation::Avr)) {
            if (++frames <= 4) {
                std::cout << frame->timeStamp() % 86'400'000
                          << " ms after midnight: " << ModeSEncapsulation::encapsulateRawHex(*frame);
            }
        }
    }
    std::cout << frames << " frames\n";
}
