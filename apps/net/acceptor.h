// SPDX-License-Identifier: MIT
#pragma once

#include "net/endpoint.h"

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>

#include <functional>
#include <string>

namespace quorvel::net {

/// Calls `take` with each connection to a port, while it lives.
class PortAcceptor {
public:
    using Take = std::function<void(asio::ip::tcp::socket)>;
    using Say = std::function<void(std::string const& line)>;

    PortAcceptor(asio::io_context& context, Take take);

    /// Listens on a port of one address of this machine, or of all when none is given. Port 0 is any free port; `say`
    /// is then called with its number and the name of the user of the port. Throws HostError.
    void listen(Endpoint const& endpoint, std::string const& user, Say const& say);

    void stop();

private:
    void accept();

    asio::ip::tcp::acceptor _acceptor;
    asio::steady_timer _pausing;
    Take _take;
};

} // namespace quorvel::net
