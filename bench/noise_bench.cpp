// SPDX-License-Identifier: MIT
// The whole road of useless frames: extended squitters beyond repair, and noise that reads as
// replies of aircraft that do not exist.
#include "support/bench_frames.h"
#include "support/measure.h"
#include "support/streams.h"

#include <iterator>
#include <map>

namespace quorvel::modes::bench {

namespace {

constexpr std::size_t kBeastHeadBytes = 9; // escape, type, time stamp, signal level

void appendBeast(std::string& bytes, std::string head, std::string const& frame) {
    head[1] = frame.size() == 7 ? '2' : '3';
    bytes += head;
    bytes += frame;
}

void unrepairable(benchmark::State& state) {
    static auto const bytes = [] {
        std::string result;
        Random random;
        DF17Message const message;
        auto const head = stream("intact_200.beast").substr(0, kBeastHeadBytes);
        for (auto const& frame : intactFrames(DFMessage::DF17))
            appendBeast(result, head, damagedBeyondRepair(message, frame->data(), random));
        return result;
    }();
    takeStream(state, bytes, ModeSEncapsulation::Beast);
}
BENCHMARK(unrepairable)->Name("noise/unrepairable");

// A reply whose address is hidden in its parity; everything else in it is random.
std::string randomReply(unsigned address, Random& random) {
    static DF4Message const shortReply;
    static DF20Message const longReply;
    constexpr DFMessage::DownlinkFormat formats[] = {
        DFMessage::DF0, DFMessage::DF4, DFMessage::DF5, DFMessage::DF16, DFMessage::DF20, DFMessage::DF21};
    auto const format = formats[random() % std::size(formats)];
    auto const& reply = format < DFMessage::DF16 ? static_cast<ModeSMessage const&>(shortReply) : longReply;

    std::string frame(reply.size(), '\0');
    for (auto& byte : frame) byte = static_cast<char>(random());
    frame[0] = static_cast<char>(format << 3 | (random() & 7));
    setParity(frame, reply.calculateParity(frame) ^ address);
    return frame;
}

constexpr std::size_t kNoiseFrames = 1'000'000;

// The frames of 200 aircraft among a million of noise, whose addresses repeat after `addresses` frames.
std::string noisyStream(std::size_t addresses) {
    auto const& traffic = stream("aircraft_200.beast");
    auto const frames = framesOf(traffic);
    std::string bytes;
    Random random;
    std::size_t noise = 0;
    std::size_t position = 0;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        auto const head = traffic.substr(position, kBeastHeadBytes);
        position += kBeastHeadBytes + frames[i]->data().size();
        appendBeast(bytes, head, frames[i]->data());
        for (; noise < (i + 1) * kNoiseFrames / frames.size(); ++noise)
            appendBeast(bytes, head, randomReply(scatteredAddress(noise % addresses), random));
    }
    return bytes;
}

void garbage(benchmark::State& state) {
    static std::map<std::int64_t, std::string> streams;
    auto& bytes = streams[state.range(0)];
    if (bytes.empty()) bytes = noisyStream(static_cast<std::size_t>(state.range(0)));
    takeStream(state, bytes, ModeSEncapsulation::Beast);
}
BENCHMARK(garbage)->Name("noise/addresses")->Arg(200)->Arg(kNoiseFrames);

} // namespace

} // namespace quorvel::modes::bench
