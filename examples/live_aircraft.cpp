// SPDX-License-Identifier: MIT
// Prints the aircraft that a receiver hears, every ten seconds: nc receiver.local 30005 | ./live_aircraft
#include <airspace/airspace.h>
#include <modes/log.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <unistd.h>

using namespace quorvel::airspace;

void print(Sky const& sky, TimeMs now) {
    std::printf("%02llu:%02llu:%02llu UTC\n", now / 3'600'000 % 24, now / 60'000 % 60, now / 1000 % 60);
    for (Aircraft const& plane : sky.aircraft(now)) {
        std::printf("%s  %8s", addressText(plane.address).c_str(), plane.callsign.value.value_or("").c_str());
        if (auto const altitude = plane.altitudeBaro.value) std::printf("%7d ft", *altitude);
        if (auto const at = plane.position.value) std::printf("%10.4f%10.4f", at->latitude, at->longitude);
        std::printf("\n");
    }
}

int main() {
    quorvel::modes::Log::setShowLevel(quorvel::modes::Log::Error);
    Stream stream({std::nullopt, {}, Origin::Pipe}); // from bytes to frames with times
    Sky sky;                                         // from frames to aircraft
    Frames frames;
    TimeMs shown = 0;
    std::array<char, 4096> bytes{};
    for (bool more = true; more; frames.clear()) {
        auto const count = read(STDIN_FILENO, bytes.data(), bytes.size());
        auto const time = std::chrono::system_clock::now().time_since_epoch() / std::chrono::milliseconds(1);
        more = count > 0 && stream.feed({bytes.data(), std::size_t(count)}, TimeMs(time), frames);
        if (!more) stream.finish(TimeMs(time), frames);
        for (Frame const& frame : frames) sky.take(frame);
        if (!more || stream.now() >= shown + 10'000) print(sky, shown = stream.now());
    }
}
