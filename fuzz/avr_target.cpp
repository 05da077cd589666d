// SPDX-License-Identifier: MIT
// The text path against a plain reader that converts with strtol: the same frames, times and complaints.
//
// Input: the text.
#include <modes/log.h>
#include <modes/modes_encapsulation.h>

#include "harness/day.h"
#include "harness/frames_of.h"
#include "harness/require.h"
#include "harness/target.h"
#include "support/steered_clock.h"

#include <cstdlib>
#include <sstream>

namespace quorvel::fuzz {

namespace {

using modes::Log;

struct Reading {
    std::vector<Frame> frames;
    std::vector<std::string> complaints;

    bool operator==(Reading const&) const = default;
};

// Collects the complaints while it lives.
class Complaints : public modes::LogHandler {
public:
    explicit Complaints(std::vector<std::string>& texts) : _texts(texts) {
        Log::setLogHandler(this);
        Log::setShowLevel(Log::Info);
    }
    ~Complaints() { Log::setLogHandler(nullptr); }
    Complaints(Complaints const&) = delete;
    Complaints& operator=(Complaints const&) = delete;

    void handle(Log::Level, std::string const& line) override { _texts.push_back(line.substr(line.find("] ") + 2)); }

private:
    std::vector<std::string>& _texts;
};

Reading read(std::string buffer) {
    Reading reading;
    Complaints const complaints(reading.complaints);
    append(reading.frames, modes::ModeSEncapsulation::extractAvr(buffer));
    require(buffer.empty(), "every line is used up");
    return reading;
}

// Pairs of characters after the head, as long as one starts before the last two.
std::string convertedPairs(std::string const& line) {
    std::string bytes;
    for (std::size_t i = 1; line.size() > 3 && i < line.size() - 2; i += 2) {
        bytes += static_cast<char>(std::strtol(line.substr(i, 2).c_str(), nullptr, 16));
    }
    return bytes;
}

std::uint64_t timeOf(std::string const& bytes) {
    std::uint64_t bits = 0;
    for (char const byte : bytes) bits = bits << 8 | static_cast<unsigned char>(byte);
    return kMidnight + (bits >> 30) * 1000 + (bits & 0x3FFFFFFF) / 1'000'000;
}

void readLinePlainly(std::string const& line, Reading& reading) {
    auto const complain = [&](std::string const& what) {
        reading.complaints.push_back("Corrupted AVR message (" + what + " error):");
    };
    if (line.empty()) return complain("head");
    if (line[0] == '?') return;
    if (line[0] != '*' && line[0] != ':' && line[0] != '@') return complain("head");
    if (line.back() != ';') return complain("tail");

    auto const bytes = convertedPairs(line);
    std::size_t const timeBytes = line[0] == '@' ? 6 : 0;
    auto const length = static_cast<long>(bytes.size()) - static_cast<long>(timeBytes);
    if (length != 2 && length != 7 && length != 14) return complain("length");
    auto const time = timeBytes != 0 ? timeOf(bytes.substr(0, timeBytes)) : kNow;
    reading.frames.push_back({time, bytes.substr(timeBytes)});
}

Reading readPlainly(std::string const& text) {
    Reading reading;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) readLinePlainly(line, reading);
    return reading;
}

} // namespace

void runTarget(Input input) {
    modes::test::SteeredClock const clock(kNow);
    auto const text = input.rest();
    auto const reading = read(text);
    auto const plain = readPlainly(text);
    require(reading.frames == plain.frames, "the frames that strtol makes");
    require(reading.complaints == plain.complaints, "one complaint for each corrupted line");
}

} // namespace quorvel::fuzz
