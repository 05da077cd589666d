// SPDX-License-Identifier: MIT
// Tracks the aircraft that sent AVR lines, and writes a page about each into the folder it runs in.
#include <modes/modes.h>

#include <algorithm>
#include <fstream>
#include <iostream>

using namespace quorvel::modes;

void print(ADSBTargetReport const& report, unsigned long long now) {
    std::cout << report.icaoAddressString() << "  " << report.callsign() << "  squawk "
              << (report.squawkValid() ? report.squawkString() : "unknown") << "  version " << report.mopsVersion()
              << (report.mopsVersionConfirmed() ? " confirmed" : " assumed");
    if (report.positionValid()) {
        std::cout << "  at " << report.positionString() << ", " << now - report.positionLastUpdate() << " ms ago";
    }
    std::cout << "\n";
}

void writePage(ADSBTargetReport const& report) {
    auto const address = Aircraft(report.icaoAddress()).icaoAddrString(); // six digits, no blanks
    std::ofstream(address + ".html") << report.toHtml("table { border-collapse: collapse; }");
}

int main() {
    ModeSDecoder decoder;
    ADSBTracker tracker;
    unsigned long long now = 0; // by the receiver's clock: the time of the latest reply

    for (std::string line; std::getline(std::cin, line);) {
        std::string buffer = line + "\n";
        for (auto const& frame : ModeSEncapsulation::extract(buffer, ModeSEncapsulation::Avr)) {
            tracker.procModeSMsg(decoder.decode(ModeSMessage::DOWNLINK, frame));
            now = std::max(now, frame->timeStamp());
        }
        if (now > 60'000) tracker.killTargets(now - 60'000); // those not heard for a minute
    }

    for (auto const& target : tracker.allTargets()) {
        auto const report = target->report();
        print(*report, now);
        writePage(*report);
    }
}
