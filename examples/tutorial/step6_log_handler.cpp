// SPDX-License-Identifier: MIT
// As before, with the log in our own hands: each line is counted, and shown unless it is of an AVR line.
#include <modes/modes.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <iostream>
#include <set>

using namespace quorvel::modes;

class OurLog final : public LogHandler {
public:
    OurLog() {
        Log::setLogHandler(this);
        Log::setShowLevel(Log::Debug);
    }
    OurLog(OurLog const&) = delete;
    OurLog& operator=(OurLog const&) = delete;
    ~OurLog() { Log::setLogHandler(nullptr); }

    void handle(Log::Level level, std::string const& line) override {
        ++_lines.at(level);
        if (line.find("Get AVR line") == std::string::npos) std::cout << line << "\n";
    }

    void printCounts() const {
        std::cout << _lines[Log::Debug] << " lines of routine, " << _lines[Log::Info] << " of interest, "
                  << _lines[Log::Warning] + _lines[Log::Error] << " of warning or error\n";
    }

private:
    std::array<unsigned int, 4> _lines{};
};

void openDatabase(ADSBTracker& tracker) {
    try {
        tracker.setAircraftDbFile("aircraft.csv");
    } catch (std::ios_base::failure const&) {
        std::cout << "aircraft.csv cannot be read: a first run\n"; // saving will make it
    }
}

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
    OurLog log; // first, so that it outlives all that logs
    ModeSDecoder decoder;
    ADSBTracker tracker;
    unsigned long long now = 0; // by the receiver's clock: the time of the latest reply
    std::set<unsigned int> heard;
    openDatabase(tracker);

    for (std::string line; std::getline(std::cin, line);) {
        std::string buffer = line + "\n";
        for (auto const& frame : ModeSEncapsulation::extract(buffer, ModeSEncapsulation::Avr)) {
            auto const target = tracker.procModeSMsg(decoder.decode(ModeSMessage::DOWNLINK, frame));
            now = std::max(now, frame->timeStamp());
            if (target && heard.insert(target->icaoAddr()).second) print(*target->report(), now);
        }
        if (now > 60'000) tracker.killTargets(now - 60'000); // those not heard for a minute
    }

    for (auto const& target : tracker.allTargets()) {
        auto const report = target->report();
        print(*report, now);
        writePage(*report);
    }

    tracker.killTargets(now); // all: the database learns from targets when they are dropped
    tracker.saveAircraftDb();
    log.printCounts();
}
