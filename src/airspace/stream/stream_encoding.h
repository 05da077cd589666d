// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/encoding.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quorvel::airspace {

/// The encoding of a stream that starts like this, when a longer beginning could not change the answer: for
/// streams that come slowly.
std::optional<Encoding> findEncodingForSure(std::string_view sample);

/// What else a stream is that starts like this, as other ports of receivers and web servers send it: "a web
/// page", "BaseStation text", "JSON". Empty when it is none of them.
std::string_view findOtherContent(std::string_view sample);

/// Whether nothing is left of the parity of a whole frame of DF17 or DF18.
bool isIntactSquitter(std::string const& frame);

} // namespace quorvel::airspace
