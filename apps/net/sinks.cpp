// SPDX-License-Identifier: MIT
#include "net/sinks.h"

#include "files/host_error.h"
#include "files/replaced_file.h"
#include "net/acceptor.h"
#include "net/backoff.h"
#include "net/endpoint.h"
#include "net/schemed_name.h"

#include <asio/buffer.hpp>
#include <asio/connect.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/read_until.hpp>
#include <asio/steady_timer.hpp>
#include <asio/write.hpp>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <list>
#include <utility>

namespace quorvel::net {

namespace {

using asio::ip::tcp;

constexpr std::size_t kMostReaders = 64;
constexpr std::size_t kLongestRequest = 8 * 1024;
constexpr std::chrono::seconds kRequestTime{5};
constexpr char kListen[] = "listen";
constexpr char kTcp[] = "tcp";

Endpoint portOf(std::string const& target) {
    return parseEndpoint(target, target.starts_with(':') ? target.substr(1) : schemedName(target).rest);
}

std::FILE* madeFile(std::string const& name) {
    files::makeFolderOf(name);
    return std::fopen(name.c_str(), "wb");
}

/// A file or standard output.
class FileSink : public outputs::Sink {
public:
    explicit FileSink(std::string const& name)
        : _name(name == "-" ? "standard output" : name), _file(name == "-" ? stdout : madeFile(name)) {
        if (!_file) throw files::systemError("write", _name);
    }

    void write(std::string_view item) override {
        if (std::fwrite(item.data(), 1, item.size(), _file.get()) != item.size())
            throw files::systemError("write", _name);
    }
    void flush() override {
        if (std::fflush(_file.get()) != 0) throw files::systemError("write", _name);
    }

private:
    struct Close {
        void operator()(std::FILE* file) const {
            if (file != stdout) std::fclose(file);
        }
    };

    std::string _name;
    std::unique_ptr<std::FILE, Close> _file;
};

/// All readers that connect to a port.
class PortSink : public outputs::Sink {
public:
    PortSink(std::string const& target, NetworkOutputs& network)
        : _target(target)
        , _network(network)
        , _acceptor(network.context(), [this](tcp::socket socket) { take(std::move(socket)); }) {
        _acceptor.listen(portOf(target), target, [&](auto const& line) { network.say(line); });
    }

    void write(std::string_view item) override {
        for (auto const& reader : _readers) reader->write(item);
    }
    void flush() override {
        for (auto const& reader : _readers) reader->flush();
    }

private:
    void take(tcp::socket socket) {
        if (_readers.size() == kMostReaders) return turnAway(socket);
        auto const reader = std::make_shared<Reader>(_network.counters());
        _readers.push_back(reader);
        _network.add(reader);
        reader->start(std::move(socket), [this, reader = reader.get()] {
            _readers.remove_if([&](auto const& known) { return known.get() == reader; });
            _isFullReported = false;
        });
    }

    // It may come again and again: that there is no room is reported once.
    void turnAway(tcp::socket const& socket) {
        if (std::exchange(_isFullReported, true)) return;
        std::error_code ignored;
        auto const peer = socket.remote_endpoint(ignored);
        _network.say(_target + ": reader " + peer.address().to_string() + " port " + std::to_string(peer.port()) +
                     " was refused: there are " + std::to_string(kMostReaders) + " already");
    }

    std::string _target;
    NetworkOutputs& _network;
    bool _isFullReported = false;
    std::list<std::shared_ptr<Reader>> _readers;
    PortAcceptor _acceptor;
};

/// One reader to which this program connects. Items wait until it is connected for the first time; those that come
/// while it is away after that are lost to it, counted, and reported in the end.
class ConnectingSink : public outputs::Sink {
public:
    ConnectingSink(std::string const& target, NetworkOutputs& network)
        : _target(target)
        , _endpoint(parseConnection(target, schemedName(target).rest))
        , _network(network)
        , _resolver(network.context())
        , _socket(network.context())
        , _pausing(network.context())
        , _reader(makeReader()) {
        connect();
    }
    ~ConnectingSink() override {
        auto const lost = _lost + (_reader ? _reader->waiting() : 0);
        if (lost > 0) _network.say(_target + ": " + std::to_string(lost) + " items did not reach it");
    }
    ConnectingSink(ConnectingSink const&) = delete;
    ConnectingSink& operator=(ConnectingSink const&) = delete;

    void write(std::string_view item) override {
        if (_reader) {
            _reader->write(item);
        } else {
            ++_network.counters().outputDropped;
            ++_lost;
        }
    }
    void flush() override {
        if (_reader) _reader->flush();
    }

private:
    std::shared_ptr<Reader> makeReader() {
        auto reader = std::make_shared<Reader>(_network.counters());
        _network.add(reader);
        return reader;
    }

    void connect() {
        _resolver.async_resolve(
            _endpoint.host, _endpoint.port, [this](std::error_code const& error, auto const& endpoints) {
                if (error) return failed(error, "cannot find " + _endpoint.host);
                _socket = tcp::socket(_network.context());
                asio::async_connect(_socket, endpoints, [this](std::error_code const& failure, tcp::endpoint const&) {
                    if (failure) return failed(failure, "cannot connect");
                    connected();
                });
            });
    }

    void connected() {
        if (_isReported) _network.say(_target + ": connected");
        _isReported = false;
        _pause.reset();
        if (!_reader) _reader = makeReader();
        _reader->start(std::move(_socket), [this] {
            _reader.reset();
            failed(asio::error::eof, "the connection was lost");
        });
    }

    void failed(std::error_code const& error, std::string const& what) {
        if (error == asio::error::operation_aborted) return;
        if (!_isReported)
            _network.say(_target + ": " + what + ": " + error.message() + "; trying again until it works");
        _isReported = true;
        _pausing.expires_after(_pause.next());
        _pausing.async_wait([this](std::error_code const& stopped) {
            if (!stopped) connect();
        });
    }

    std::string _target;
    Endpoint _endpoint;
    NetworkOutputs& _network;
    tcp::resolver _resolver;
    tcp::socket _socket;
    asio::steady_timer _pausing;
    Backoff _pause;
    std::shared_ptr<Reader> _reader; // none after it went away
    std::size_t _lost = 0;
    bool _isReported = false;
};

/// One request, in which only the method matters, and the response to it.
class HttpResponse : public std::enable_shared_from_this<HttpResponse> {
public:
    HttpResponse(tcp::socket socket, asio::io_context& context) : _socket(std::move(socket)), _deadline(context) {}

    void send(std::function<std::string()> const& text, std::string const& contentType) {
        _deadline.expires_after(kRequestTime);
        _deadline.async_wait([self = shared_from_this()](std::error_code const& error) {
            std::error_code ignored;
            if (!error) self->_socket.close(ignored);
        });
        asio::async_read_until(_socket, asio::dynamic_buffer(_request, kLongestRequest), "\r\n\r\n",
            [self = shared_from_this(), text, contentType](std::error_code const& error, std::size_t) {
                if (error) return self->end();
                self->write(text(), contentType);
            });
    }

private:
    void write(std::string const& text, std::string const& contentType) {
        bool const wantsText = _request.starts_with("GET ") || _request.starts_with("HEAD ");
        auto const body = !wantsText ? std::string("only GET is answered here\n") : text;
        _answer = (wantsText ? "HTTP/1.1 200 OK\r\nContent-Type: " + contentType
                             : std::string(
                                   "HTTP/1.1 405 Method Not Allowed\r\nAllow: GET, HEAD\r\nContent-Type: text/plain")) +
                  "\r\nContent-Length: " + std::to_string(body.size()) + "\r\nConnection: close\r\n\r\n";
        if (!_request.starts_with("HEAD ")) _answer += body;
        asio::async_write(_socket, asio::buffer(_answer),
            [self = shared_from_this()](std::error_code const&, std::size_t) { self->end(); });
    }

    void end() {
        std::error_code ignored;
        _deadline.cancel();
        _socket.shutdown(tcp::socket::shutdown_both, ignored);
        _socket.close(ignored);
    }

    tcp::socket _socket;
    asio::steady_timer _deadline;
    std::string _request;
    std::string _answer;
};

class HttpServer : public TextServer {
public:
    HttpServer(
        std::string const& target, std::string contentType, std::function<std::string()> text, NetworkOutputs& network)
        : _contentType(std::move(contentType))
        , _text(std::move(text))
        , _acceptor(network.context(), [this, &network](tcp::socket socket) {
            std::make_shared<HttpResponse>(std::move(socket), network.context())->send(_text, _contentType);
        }) {
        _acceptor.listen(portOf(target), target, [&](auto const& line) { network.say(line); });
    }

private:
    std::string _contentType;
    std::function<std::string()> _text;
    PortAcceptor _acceptor;
};

} // namespace

void NetworkOutputs::add(std::shared_ptr<Reader> const& reader) {
    std::erase_if(_readers, [](auto const& known) { return known.expired(); });
    _readers.push_back(reader);
}

bool NetworkOutputs::isIdle() const {
    return std::all_of(_readers.begin(), _readers.end(), [](auto const& known) {
        auto const reader = known.lock();
        return !reader || reader->isIdle();
    });
}

bool isPort(std::string const& target) { return target.starts_with(':') || schemedName(target).scheme == kListen; }

std::unique_ptr<outputs::Sink> makeSink(std::string const& target, NetworkOutputs& network) {
    if (isPort(target)) return std::make_unique<PortSink>(target, network);
    auto const scheme = schemedName(target).scheme;
    if (scheme == kTcp) return std::make_unique<ConnectingSink>(target, network);
    if (!scheme.empty()) {
        throw files::UsageError(
            "cannot write to " + target + ": outputs go to files, -, :PORT, listen://PORT and tcp://HOST:PORT");
    }
    return std::make_unique<FileSink>(target);
}

std::unique_ptr<TextServer> TextServer::make(
    std::string const& target, std::string contentType, std::function<std::string()> text, NetworkOutputs& network) {
    return std::make_unique<HttpServer>(target, std::move(contentType), std::move(text), network);
}

} // namespace quorvel::net
