// SPDX-License-Identifier: MIT
#pragma once

#include <modes/modes_encapsulation.h>

#include <cstddef>
#include <optional>
#include <string_view>

namespace quorvel::host {

/// As many bytes of a stream's beginning as are worth looking at to find out what it is.
inline constexpr std::size_t kSampleBytes = 64 * 1024;

/// The encoding of a stream that begins like this: Beast when most of it is frames that follow each other,
/// AVR when a line of it is one. Raw binary has no marks and is never found; nothing else is either.
std::optional<modes::ModeSEncapsulation::Format> findFormat(std::string_view sample);

} // namespace quorvel::host
