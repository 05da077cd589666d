// SPDX-License-Identifier: MIT
#include "host/frameless_span.h"

#include "host/stream_encoding.h"

namespace quorvel::host {

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
        _begin.clear();
        _isTold = false;
        return false;
    }
    _bytes += bytes.size();
    _begin += bytes.substr(0, kSampleBytes - _begin.size());
    return tell(_hadFrames ? kNotable : kNotableAtFirst);
}

bool FramelessSpan::settle(std::optional<Encoding> expected) {
    return !_hadFrames && !_isTold && !otherThan(expected, _begin).empty() && tell(1);
}

bool FramelessSpan::finish(std::optional<Encoding> expected) {
    if (_isTold) return false;
    if (!otherThan(expected, _begin).empty()) return tell(1);
    return tell(_hadFrames ? kNotableAtEnd : kMoreThanAFrame);
}

std::string FramelessSpan::text(std::optional<Encoding> expected) const {
    auto text = "no frames in the last " + std::to_string(_bytes) + " bytes";
    auto const looksLike = otherThan(expected, _begin);
    if (looksLike.empty()) return text;
    text += ": this looks like " + std::string(looksLike);
    if (expected) text += "; expected " + std::string(nameOf(*expected));
    return text;
}

} // namespace quorvel::host
