// SPDX-License-Identifier: MIT
#include "support/bench_frames.h"

#include "support/streams.h"

#include <map>
#include <set>

namespace quorvel::modes::bench {

namespace {

constexpr unsigned long long kTimeStamp = 1'700'000'000'000; // any, so long as there is one

constexpr std::size_t kFormatBits = 5;
constexpr std::size_t kParityBits = 24;

// A squitter under another format, with a first field (CF, AF) of 0 and the parity that goes with it.
std::string squitterAs(DFMessage::DownlinkFormat format, std::string frame) {
    frame[0] = static_cast<char>(format << 3);
    setParity(frame, DF17Message().calculateParity(frame));
    return frame;
}

std::map<DFMessage::DownlinkFormat, Records> sortedByFormat(Records const& frames) {
    std::map<DFMessage::DownlinkFormat, Records> sorted;
    for (auto const& frame : frames) sorted[downlinkFormat(frame->data())].push_back(frame);
    for (auto const format : {DFMessage::DF18, DFMessage::DF19}) {
        for (auto const& squitter : sorted[DFMessage::DF17])
            sorted[format].push_back(record(squitterAs(format, squitter->data())));
    }
    return sorted;
}

Records const& intactFrames() {
    static auto const frames = framesOf(stream("intact_200.beast"));
    return frames;
}

} // namespace

Records framesOf(std::string const& beast) {
    auto buffer = beast;
    return ModeSEncapsulation::extractBeast(buffer);
}

Records const& intactFrames(DFMessage::DownlinkFormat format) {
    static auto sorted = sortedByFormat(intactFrames());
    return sorted[format];
}

DFMessage::DownlinkFormat downlinkFormat(std::string const& frame) {
    return DFMessage::downlinkFormatByCode(static_cast<unsigned char>(frame[0]) >> 3);
}

ModeSDecoder decoderInService() {
    static auto const decoder = [] {
        ModeSDecoder result;
        for (auto const& frame : intactFrames()) result.decode(ModeSMessage::DOWNLINK, frame);
        return result;
    }();
    return decoder;
}

void setParity(std::string& frame, unsigned parity) {
    for (std::size_t i = 0; i < 3; ++i) frame[frame.size() - 3 + i] = static_cast<char>(parity >> (16 - 8 * i));
}

std::string damaged(std::string frame, std::size_t bits, Random& random) {
    std::uniform_int_distribution<std::size_t> position(kFormatBits, 8 * frame.size() - kParityBits - 1);
    std::set<std::size_t> positions;
    while (positions.size() < bits) positions.insert(position(random));
    for (auto const bit : positions) {
        auto& byte = frame[bit / 8];
        byte = static_cast<char>(static_cast<unsigned char>(byte) ^ 0x80U >> bit % 8);
    }
    return frame;
}

std::string damagedBeyondRepair(ModeSMessage const& message, std::string const& frame, Random& random) {
    std::uniform_int_distribution<std::size_t> bits(3, 5);
    auto const parity = message.calculateParity(frame);
    unsigned char first = 0;
    unsigned char second = 0;
    for (;;) {
        auto const result = damaged(frame, bits(random), random);
        auto tried = result;
        if (!message.fixError1Bit(tried, first, parity) && !message.fixError2Bits(tried, first, second, parity))
            return result;
    }
}

std::shared_ptr<ModeSEncapsulation> record(std::string const& frame) {
    auto result = std::make_shared<ModeSEncapsulation>();
    result->setTimeStamp(kTimeStamp);
    result->setData(frame);
    return result;
}

} // namespace quorvel::modes::bench
