// SPDX-License-Identifier: MIT
#include "inspect/csv_frames.h"

#include <airspace/encoding.h>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace quorvel::inspect {

namespace {

constexpr std::size_t kLongestLine = 256; // of one that can be a frame or a header
constexpr double kLatestSeconds = 1e11;   // after the year 5000
constexpr double kMsPerSecond = 1000.0;

std::string_view withoutEnd(std::string_view line) {
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

// Whole milliseconds; none of a text that is not digits with at most one point.
std::optional<airspace::TimeMs> timeOf(std::string_view text) {
    double seconds = 0.0;
    if (text.empty() || text.find_first_not_of("0123456789.") != std::string_view::npos) return std::nullopt;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    bool const isNumber = error == std::errc() && end == text.data() + text.size();
    if (!isNumber || seconds > kLatestSeconds) return std::nullopt;
    return static_cast<airspace::TimeMs>(std::llround(seconds * kMsPerSecond));
}

std::optional<std::string> bytesOf(std::string_view digits) {
    auto const size = digits.size() / 2;
    bool const isModeS = size == airspace::kShortFrameBytes || size == airspace::kLongFrameBytes;
    if (!isModeS || digits.size() % 2 != 0) return std::nullopt;
    std::string bytes;
    for (std::size_t at = 0; at < digits.size(); at += 2) {
        unsigned char byte = 0;
        auto const* const last = digits.data() + at + 2;
        if (std::from_chars(digits.data() + at, last, byte, 16).ptr != last) return std::nullopt;
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

std::optional<airspace::Frame> frameOf(std::string_view line) {
    auto const comma = line.find(',');
    if (comma == std::string_view::npos) return std::nullopt;
    auto const time = timeOf(line.substr(0, comma));
    auto const bytes = bytesOf(line.substr(comma + 1));
    if (!time || !bytes) return std::nullopt;
    return airspace::Frame::of(*bytes, *time);
}

bool isText(std::string_view line) {
    return std::ranges::all_of(line, [](char one) { return static_cast<unsigned char>(one) >= ' '; });
}

// The heading of two columns, in words.
bool canBeHeader(std::string_view line) {
    bool const hasDigitFirst = !line.empty() && line.front() >= '0' && line.front() <= '9';
    return !hasDigitFirst && isText(line) && std::ranges::count(line, ',') == 1;
}

} // namespace

std::optional<bool> CsvFrames::recognizes(std::string_view beginning, bool isWhole) {
    for (unsigned lines = 0; lines < 2; ++lines) {
        auto const end = beginning.find('\n');
        auto const line = withoutEnd(beginning.substr(0, end));
        if (end == std::string_view::npos && !isWhole) {
            if (line.size() > kLongestLine || !isText(line)) return false;
            return std::nullopt;
        }
        if (frameOf(line)) return true;
        if (!canBeHeader(line) || end == std::string_view::npos) return false;
        beginning.remove_prefix(end + 1);
    }
    return false;
}

void CsvFrames::feed(std::string_view bytes, airspace::Frames& frames) {
    for (auto end = bytes.find('\n'); end != std::string_view::npos; end = bytes.find('\n')) {
        _line.append(bytes.substr(0, std::min(end, kLongestLine)));
        take(withoutEnd(_line), frames);
        _line.clear();
        bytes.remove_prefix(end + 1);
    }
    auto const room = kLongestLine + 1 - std::min(_line.size(), kLongestLine + 1);
    _line.append(bytes.substr(0, room));
}

void CsvFrames::finish(airspace::Frames& frames) {
    take(withoutEnd(_line), frames);
    _line.clear();
}

void CsvFrames::take(std::string_view line, airspace::Frames& frames) {
    if (line.empty()) return;
    bool const isFirst = _lines++ == 0;
    if (auto const frame = frameOf(line))
        frames.push_back(*frame);
    else if (!isFirst || !canBeHeader(line))
        ++_badLines;
}

} // namespace quorvel::inspect
