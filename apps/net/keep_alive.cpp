// SPDX-License-Identifier: MIT
#include "net/keep_alive.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

namespace quorvel::net {

namespace {

struct Option {
    int level;
    int name;
    int value;
};

constexpr Option kOptions[] = {{SOL_SOCKET, SO_KEEPALIVE, 1},
    {IPPROTO_TCP, TCP_KEEPIDLE, 60}, // seconds of silence before the first probe
    {IPPROTO_TCP, TCP_KEEPINTVL, 10}, {IPPROTO_TCP, TCP_KEEPCNT, 3}};

} // namespace

void keepAlive(asio::ip::tcp::socket& socket) {
    for (auto const& option : kOptions)
        ::setsockopt(socket.native_handle(), option.level, option.name, &option.value, sizeof option.value);
}

} // namespace quorvel::net
