// SPDX-License-Identifier: MIT
#pragma once

#include <asio/ip/tcp.hpp>

namespace quorvel::host {

/// Lets a connection of which nothing is heard be probed, so that it is lost a minute and a half after its
/// peer was, instead of holding a place for ever.
void keepAlive(asio::ip::tcp::socket& socket);

} // namespace quorvel::host
