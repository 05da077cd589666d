// SPDX-License-Identifier: MIT
#include "airspace/stream/frameless_span.h"

#include "airspace/stream/stream_encoding.h"

namespace quorvel::airspace {

namespace {

// What the bytes look like, unless it is what they should be.
std::string_view otherThan(std::optional<Encoding> expected, std::string_view bytes) {
    auto const encoding = findEncoding(bytes);
    if (!encoding) return findOtherContent(bytes);
    return encoding == expected ? std::string_view() : nameOf(*encoding);
}

} // namespace

bool FramelessSpan::take(std::string_view bytes, bool gaveFrames) {
    if (gaveFrames) {
        _hadFrames = true;
        _bytes = 0;
        _start.clear();
        _isReported = false;
        return false;
    }
    _bytes += bytes.size();
    _start += bytes.substr(0, kSampleBytes - _start.size());
    return report(_hadFrames ? kNotable : kNotableAtFirst);
}

bool FramelessSpan::settle(std::optional<Encoding> expected) {
    return !_hadFrames && !_isReported && !otherThan(expected, _start).empty() && report(1);
}

bool FramelessSpan::finish(std::optional<Encoding> expected) {
    if (_isReported) return false;
    if (!otherThan(expected, _start).empty()) return report(1);
    return report(_hadFrames ? kNotableAtEnd : kMoreThanAFrame);
}

std::string FramelessSpan::text(std::optional<Encoding> expected) const {
    auto text = "no frames in the last " + std::to_string(_bytes) + " bytes";
    auto const looksLike = otherThan(expected, _start);
    if (looksLike.empty()) return text;
    text += ": this looks like " + std::string(looksLike);
    if (expected) text += "; expected " + std::string(nameOf(*expected));
    return text;
}

} // namespace quorvel::airspace
