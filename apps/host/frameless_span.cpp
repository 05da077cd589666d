// SPDX-License-Identifier: MIT
#include "host/frameless_span.h"

#include "host/stream_encoding.h"

namespace quorvel::host {

std::string FramelessSpan::text(std::optional<Encoding> expected) const {
    auto text = "no frames in the last " + std::to_string(_bytes) + " bytes";
    auto const looksLike = findEncoding(_last);
    if (!looksLike || looksLike == expected) return text;
    text += ": this looks like " + std::string(nameOf(*looksLike));
    if (expected) text += "; expected " + std::string(nameOf(*expected));
    return text;
}

} // namespace quorvel::host
