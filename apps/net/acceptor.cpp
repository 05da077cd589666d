// SPDX-License-Identifier: MIT
#include "net/acceptor.h"

#include "files/host_error.h"

#include <asio/ip/v6_only.hpp>

#include <chrono>
#include <utility>

namespace quorvel::net {

namespace {

using asio::ip::tcp;

constexpr std::chrono::seconds kPause{1};

std::error_code open(tcp::acceptor& acceptor, tcp::endpoint const& endpoint, bool alsoVersion4) {
    std::error_code error;
    acceptor.open(endpoint.protocol(), error);
    if (!error && alsoVersion4) acceptor.set_option(asio::ip::v6_only(false), error);
    if (!error) acceptor.set_option(tcp::acceptor::reuse_address(true), error);
    if (!error) acceptor.bind(endpoint, error);
    if (!error) acceptor.listen(tcp::acceptor::max_listen_connections, error);
    if (error && acceptor.is_open()) {
        std::error_code ignored;
        acceptor.close(ignored);
    }
    return error;
}

void open(tcp::acceptor& acceptor, Endpoint const& endpoint) {
    auto const port = static_cast<std::uint16_t>(std::stoul(endpoint.port));
    std::error_code error;
    if (endpoint.host.empty()) {
        error = open(acceptor, {tcp::v6(), port}, true);
        // a machine without version 6 of the protocol
        if (error == asio::error::address_family_not_supported) error = open(acceptor, {tcp::v4(), port}, false);
    } else {
        auto const host = endpoint.host == "localhost" ? "127.0.0.1" : endpoint.host;
        auto const address = asio::ip::make_address(host, error);
        if (error) throw files::HostError("cannot listen on " + endpoint.host + ": it is not an IP address");
        error = open(acceptor, {address, port}, false);
    }
    if (error) throw files::HostError("cannot listen on port " + endpoint.port + ": " + error.message());
}

} // namespace

PortAcceptor::PortAcceptor(asio::io_context& context, Take take)
    : _acceptor(context), _pausing(context), _take(std::move(take)) {}

void PortAcceptor::listen(Endpoint const& endpoint, std::string const& user, Say const& say) {
    open(_acceptor, endpoint);
    if (endpoint.port == "0") say(user + ": listening on port " + std::to_string(_acceptor.local_endpoint().port()));
    accept();
}

void PortAcceptor::accept() {
    _acceptor.async_accept([this](std::error_code const& error, tcp::socket socket) {
        if (error == asio::error::operation_aborted) return;
        if (!error) {
            _take(std::move(socket));
            return accept();
        }
        _pausing.expires_after(kPause); // too many open files: it may pass
        _pausing.async_wait([this](std::error_code const& stopped) {
            if (!stopped) accept();
        });
    });
}

void PortAcceptor::stop() {
    std::error_code ignored;
    _acceptor.close(ignored);
    _pausing.cancel();
}

} // namespace quorvel::net
