// SPDX-License-Identifier: MIT
#include "host/stream_format.h"

#include <modes/df_message.h>

#include "host/beast_undoubler.h"
#include "host/raw_frames.h"

#include <algorithm>
#include <string>

namespace quorvel::host {

namespace {

using modes::ModeSEncapsulation;

constexpr std::size_t kLongestFrameBytes = 2 * 23; // a doubled one; the last of a sample may be cut

bool isAvrLine(std::string_view line) {
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (line.size() < 4 || std::string_view("*:@").find(line.front()) == std::string_view::npos) return false;
    auto const digits = line.substr(1, line.find(';') - 1);
    return line.find(';') != std::string_view::npos &&
           digits.find_first_not_of("0123456789ABCDEFabcdef") == std::string_view::npos;
}

bool hasAvrLine(std::string_view sample) {
    while (!sample.empty()) {
        auto const end = std::min(sample.find('\n'), sample.size());
        if (isAvrLine(sample.substr(0, end))) return true;
        sample.remove_prefix(std::min(end + 1, sample.size()));
    }
    return false;
}

// Extended squitters prove themselves by their parity.
bool isSquitter(std::string const& frame) {
    auto const format = static_cast<unsigned char>(frame[0]) >> 3;
    return format == modes::DFMessage::DF17 || format == modes::DFMessage::DF18;
}

bool isIntactSquitter(std::string const& frame) {
    modes::ModeSMessageFieldPI parity;
    return parity.decode(frame, 88) &&
           parity.parityInterrogatorId() == modes::DF17Message().calculateParity(frame);
}

// Raw binary has no marks between its frames. It is taken for such when half of the squitters in it, read
// from its first byte on, are intact.
bool looksRaw(std::string_view sample) {
    std::size_t squitters = 0;
    std::size_t intact = 0;
    for (std::size_t at = 0; at < sample.size() && at + rawFrameBytes(sample[at]) <= sample.size();) {
        std::string const frame(sample.substr(at, rawFrameBytes(sample[at])));
        at += frame.size();
        if (!isSquitter(frame)) continue;
        ++squitters;
        intact += isIntactSquitter(frame) ? 1U : 0U;
    }
    return intact > 0 && 2 * intact >= squitters;
}

} // namespace

std::optional<ModeSEncapsulation::Format> findFormat(std::string_view sample) {
    auto const frames = std::max(chainedBytes(sample, true), chainedBytes(sample, false));
    if (frames > 0 && 2 * frames + kLongestFrameBytes >= sample.size()) return ModeSEncapsulation::Beast;
    if (hasAvrLine(sample)) return ModeSEncapsulation::Avr;
    if (looksRaw(sample)) return ModeSEncapsulation::RawBin;
    return {};
}

} // namespace quorvel::host
