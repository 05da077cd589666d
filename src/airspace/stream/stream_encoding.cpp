// SPDX-License-Identifier: MIT
#include "airspace/stream/stream_encoding.h"

#include <modes/df_message.h>

#include "airspace/stream/beast_undoubler.h"
#include "core/hex.h"
#include "core/wire.h"

#include <algorithm>
#include <string>

namespace quorvel::airspace {

namespace {

// Doubled. The last record of a sample may be cut.
constexpr std::size_t kLongestRecordBytes = 2 * modes::wire::BeastRecord::kLongestBytes;
constexpr std::size_t kSureLines = 4;

bool isHex(std::string_view text) {
    return std::ranges::all_of(text, [](char digit) { return modes::hexDigitValue(digit) != modes::kNoHexDigit; });
}

bool isAvrLine(std::string_view line) {
    return line.size() >= 4 && std::string_view("*:@").find(line.front()) != std::string_view::npos &&
           line.find(';') != std::string_view::npos && isHex(line.substr(1, line.find(';') - 1));
}

bool isHexLine(std::string_view line) {
    return (line.size() == 2 * kShortFrameBytes || line.size() == 2 * kLongFrameBytes) && isHex(line);
}

constexpr std::string_view kBlanks = " \t\r\n";

struct OtherContent {
    std::string_view begin;
    std::string_view next; // one of these after it, behind blanks; anything when empty
    std::string_view name;
};

constexpr OtherContent kOtherContents[] = {
    {"HTTP/", "", "a web page"},
    {"<!", "", "a web page"},
    {"<html", "", "a web page"},
    {"MSG,", "", "BaseStation text"},
    {"{", "\"}", "JSON"},
    {"[", "{[\"]", "JSON"},
};

std::string_view withoutBlanks(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(kBlanks), text.size()));
}

bool beginsWith(std::string_view sample, OtherContent const& content) {
    if (!sample.starts_with(content.begin)) return false;
    auto const rest = withoutBlanks(sample.substr(content.begin.size()));
    return content.next.empty() || (!rest.empty() && content.next.find(rest.front()) != std::string_view::npos);
}

// Raw binary may start with any of the characters, but soon has control characters.
bool isText(std::string_view sample) {
    return std::ranges::none_of(sample, [](char character) {
        return static_cast<unsigned char>(character) < ' ' && kBlanks.find(character) == std::string_view::npos;
    });
}

// Lines of a sample, and how many of them are of which kind.
struct Lines {
    std::size_t all = 0;
    std::size_t avr = 0;
    std::size_t hex = 0;
};

Lines countLines(std::string_view sample) {
    Lines lines;
    while (!sample.empty()) {
        auto const end = std::min(sample.find('\n'), sample.size());
        auto line = sample.substr(0, end);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        ++lines.all;
        lines.avr += isAvrLine(line) ? 1U : 0U;
        lines.hex += isHexLine(line) ? 1U : 0U;
        sample.remove_prefix(std::min(end + 1, sample.size()));
    }
    return lines;
}

// Extended squitters prove themselves by their parity.
bool isSquitter(std::string const& frame) {
    auto const format = modes::wire::formatCode(frame);
    return format == modes::DFMessage::DF17 || format == modes::DFMessage::DF18;
}

// Raw binary has no marks between its frames. It is taken for such when half of the squitters in it, read
// from its first byte on, are intact.
bool looksRaw(std::string_view sample) {
    std::size_t squitters = 0;
    std::size_t intact = 0;
    for (std::size_t at = 0; at < sample.size() && at + modeSFrameBytes(sample[at]) <= sample.size();) {
        std::string const frame(sample.substr(at, modeSFrameBytes(sample[at])));
        at += frame.size();
        if (!isSquitter(frame)) continue;
        ++squitters;
        intact += isIntactSquitter(frame) ? 1U : 0U;
    }
    return intact > 0 && 2 * intact >= squitters;
}

std::optional<Encoding> findBeast(std::string_view sample) {
    auto const doubled = chainedBytes(sample, true);
    auto const plain = chainedBytes(sample, false);
    auto const frames = std::max(doubled, plain);
    if (frames == 0 || 2 * frames + kLongestRecordBytes < sample.size()) return {};
    return doubled >= plain ? Encoding::Beast : Encoding::BeastPlain;
}

} // namespace

bool isIntactSquitter(std::string const& frame) {
    constexpr unsigned char kParityAt = 8 * kLongFrameBytes - modes::wire::kParityBits;
    modes::ModeSMessageFieldPI parity;
    return parity.decode(frame, kParityAt) &&
           parity.parityInterrogatorId() == modes::DF17Message().calculateParity(frame);
}

std::optional<Encoding> findEncoding(std::string_view sample) {
    if (auto const beast = findBeast(sample)) return beast;
    auto const lines = countLines(sample);
    if (lines.avr > 0 && lines.avr >= lines.hex) return Encoding::Avr;
    if (lines.hex > 0) return Encoding::Hex;
    if (looksRaw(sample)) return Encoding::Raw;
    return {};
}

std::optional<Encoding> findEncodingForSure(std::string_view sample) {
    if (auto const beast = findBeast(sample)) {
        bool const tells = chainedBytes(sample, true) != chainedBytes(sample, false);
        return tells ? beast : std::nullopt;
    }
    auto const lines = countLines(sample);
    if (lines.avr >= kSureLines && 2 * lines.avr >= lines.all) return Encoding::Avr;
    if (lines.hex >= kSureLines && 2 * lines.hex >= lines.all) return Encoding::Hex;
    return {};
}

std::string_view findOtherContent(std::string_view sample) {
    if (!isText(sample)) return {};
    auto const text = withoutBlanks(sample);
    for (auto const& content : kOtherContents) {
        if (beginsWith(text, content)) return content.name;
    }
    return {};
}

} // namespace quorvel::airspace
