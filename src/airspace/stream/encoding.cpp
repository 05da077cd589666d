// SPDX-License-Identifier: MIT
#include <airspace/encoding.h>

#include <algorithm>

namespace quorvel::airspace {

namespace {

EncodingName const& entryOf(Encoding encoding) {
    return *std::find_if(
        kEncodings.begin(), kEncodings.end(), [&](auto const& entry) { return entry.encoding == encoding; });
}

} // namespace

std::string_view nameOf(Encoding encoding) { return entryOf(encoding).name; }

std::string_view identifierOf(Encoding encoding) { return entryOf(encoding).identifier; }

std::optional<Encoding> encodingOf(std::string_view identifier) {
    auto const* const entry = std::find_if(
        kEncodings.begin(), kEncodings.end(), [&](auto const& known) { return known.identifier == identifier; });
    if (entry == kEncodings.end()) return {};
    return entry->encoding;
}

} // namespace quorvel::airspace
