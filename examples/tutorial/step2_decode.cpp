// SPDX-License-Identifier: MIT
// Cuts frames out of AVR lines and decodes them.
#include <modes/modes.h>

#include <array>
#include <iostream>

using namespace quorvel::modes;

void show(ModeSMessage const& reply) {
    std::array<char const*, 4> const confidences{"none", "low", "medium", "high"};

    std::cout << reply.icaoAddressHexString() << "  confidence " << confidences.at(reply.confidence()) << "  "
              << reply.description() << "\n";
}

void showPayload(ModeSMessage const& reply, ADSBDecoder const& decoder) {
    auto const* squitter = dynamic_cast<DF17Message const*>(&reply);
    if (squitter == nullptr) return;
    if (auto const message = decoder.decode(MOPS_V2, squitter->constFieldME().data())) {
        std::cout << "        " << message->description() << "\n";
    }
}

int main() {
    ModeSDecoder decoder;
    ADSBDecoder payloadDecoder;
    unsigned int replies = 0;

    for (std::string line; std::getline(std::cin, line);) {
        std::string buffer = line + "\n";
        for (auto const& frame : ModeSEncapsulation::extract(buffer, ModeSEncapsulation::Avr)) {
            auto const reply = decoder.decode(ModeSMessage::DOWNLINK, frame);
            if (reply && ++replies <= 8) {
                show(*reply);
                showPayload(*reply, payloadDecoder);
            }
        }
    }
    std::cout << replies << " replies\n";
}
