// SPDX-License-Identifier: MIT
#pragma once

#include "host/encoding.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace quorvel::host {

/// As many bytes of a stream's beginning as are worth looking at to find out what it is.
inline constexpr std::size_t kSampleBytes = 64 * 1024;

/// The encoding of a stream that begins like this: Beast when most of it is frames that follow each other,
/// AVR or hexadecimal when a line of it is one, raw binary when its extended squitters are intact; none
/// otherwise.
std::optional<Encoding> findEncoding(std::string_view sample);

/// The same, when a longer beginning could not change the answer: for streams that come slowly.
std::optional<Encoding> findEncodingForSure(std::string_view sample);

/// What else a stream is that begins like this, as other ports of receivers and web servers send it: "a web
/// page", "BaseStation text", "JSON". Empty when it is none of them.
std::string_view findOtherContent(std::string_view sample);

} // namespace quorvel::host
