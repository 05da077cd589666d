// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace quorvel::net {

/// "[HOST:]PORT", the host in brackets where it has colons: "30003", "127.0.0.1:30003", "[::1]:30003".
struct Endpoint {
    std::string host; ///< empty when not given
    std::string port; ///< 0 to 65535
};

/// Whether it is a number from 0 to 65535.
bool isPortNumber(std::string_view text);

/// The endpoint in a name that the user gave. Throws UsageError, about the whole name.
Endpoint parseEndpoint(std::string const& name, std::string_view text);

/// The same for one to connect to, which has a host.
Endpoint parseConnection(std::string const& name, std::string_view text);

} // namespace quorvel::net
