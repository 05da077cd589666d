// SPDX-License-Identifier: MIT
#include "net/keep_alive.h"
#include "net/reconnecting.h"
#include "net/source_makers.h"

#include <asio/connect.hpp>
#include <asio/ip/tcp.hpp>

namespace quorvel::net {

namespace {

using asio::ip::tcp;

class TcpSource : public Reconnecting<tcp::socket> {
public:
    TcpSource(SourceSpec const& spec, SourceCommon common, asio::io_context& context)
        : Reconnecting(std::move(common), context), _spec(spec), _resolver(context), _socket(context) {}

private:
    void connect() override {
        _resolver.async_resolve(_spec.host, _spec.port, [this](std::error_code const& error, auto const& endpoints) {
            if (error) return failed("cannot find " + _spec.host + ": " + error.message());
            _socket = tcp::socket(_context);
            asio::async_connect(_socket, endpoints, [this](std::error_code const& failure, tcp::endpoint const&) {
                if (failure) return failed("cannot connect: " + failure.message());
                keepAlive(_socket);
                connected(std::move(_socket));
            });
        });
    }

    void cancelConnecting() override {
        std::error_code ignored;
        _resolver.cancel();
        _socket.close(ignored);
    }

    SourceSpec _spec;
    tcp::resolver _resolver;
    tcp::socket _socket;
};

} // namespace

std::unique_ptr<LiveSource> makeTcpSource(SourceSpec const& spec, SourceCommon common, asio::io_context& context) {
    return std::make_unique<TcpSource>(spec, std::move(common), context);
}

} // namespace quorvel::net
