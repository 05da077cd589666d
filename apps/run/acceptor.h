// SPDX-License-Identifier: MIT
#pragma once

#include "run/source_spec.h"

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>

#include <functional>
#include <string>

namespace quorvel::host {

/// Calls `take` with each connection to a port, while it lives.
class PortAcceptor {
public:
    using Take = std::function<void(asio::ip::tcp::socket)>;
    using Say = std::function<void(std::string const& line)>;

    PortAcceptor(asio::io_context& context, Take take);

    /// Listens on a port of one address of this machine, or of all when none is given. Of port 0, which is
    /// any that is free, `say` hears the number, with the name of the user of the port. Throws HostError.
    void listen(Endpoint const& endpoint, std::string const& user, Say const& say);

    void stop();

private:
    void accept();

    asio::ip::tcp::acceptor _acceptor;
    asio::steady_timer _pausing;
    Take _take;
};

} // namespace quorvel::host
