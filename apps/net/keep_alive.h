// SPDX-License-Identifier: MIT
#pragma once

#include <asio/ip/tcp.hpp>

namespace quorvel::net {

/// Probes a silent connection, so that it is lost a minute and a half after its peer was, instead of holding a place
/// for ever.
void keepAlive(asio::ip::tcp::socket& socket);

} // namespace quorvel::net
