// SPDX-License-Identifier: MIT
#include <airspace/airspace.h>
#include <modes/log.h>
#include <modes/trevallo.h>

#include <iostream>

// Takes the stream of a receiver down to its aircraft; 0 when each part of the library answers.
int main() {
    using namespace quorvel::airspace;
    quorvel::modes::Log::setShowLevel(quorvel::modes::Log::Error);

    Stream stream;
    Sky sky;
    Frames frames;
    if (!stream.feed("*8D4840D6202CC371C32CE0576098;\r\n", 0, frames) || !stream.finish(0, frames)) return 1;
    for (auto const& frame : frames) {
        if (sky.take(frame).address != 0x4840D6) return 2;
    }
    auto const aircraft = sky.find(0x4840D6, stream.now());
    if (!aircraft || aircraft->callsign.value != "KLM1023 ") return 3;

    for (auto const* beginning : {"\x1F\x8B\x08\x08", "\x28\xB5\x2F\xFD"}) { // gzip, zstd
        if (!Decompressor::forStream(beginning)) return 4;
    }
    if (listed(stream.counts()).empty()) return 5;

    std::cout << quorvel::modes::Trevallo().version() << "\n";
    return 0;
}
