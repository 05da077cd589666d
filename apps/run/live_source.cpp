// SPDX-License-Identifier: MIT
#include "run/live_source.h"

#include "host/decompressor.h"
#include "host/host_error.h"
#include "run/acceptor.h"
#include "run/growing_pause.h"
#include "run/keep_alive.h"

#include <asio/connect.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/posix/stream_descriptor.hpp>
#include <asio/serial_port.hpp>
#include <asio/steady_timer.hpp>

#include <algorithm>
#include <array>
#include <chrono>
#include <fcntl.h>
#include <list>
#include <unistd.h>
#include <utility>

namespace quorvel::host {

namespace {

using asio::ip::tcp;
using Handlers = LiveSource::Handlers;
using SteadyClock = std::chrono::steady_clock;

constexpr std::size_t kPieceBytes = 64 * 1024;
constexpr std::chrono::seconds kSettleAfter{1}; // as long as the beginning of a slow stream is looked at
constexpr std::size_t kMostFeeders = 64;

/// The present of a live stream.
class Present {
public:
    void heard(TimeMs now, TimeMs lastFrame) {
        _now = now;
        _lastFrame = lastFrame;
        _heardAt = SteadyClock::now();
    }
    TimeMs now() const {
        if (_now == 0 || _isOver) return _now;
        auto const since =
            std::chrono::duration_cast<std::chrono::milliseconds>(SteadyClock::now() - _heardAt);
        return _now + static_cast<TimeMs>(since.count());
    }
    TimeMs lastFrame() const { return _lastFrame; }
    void end() { _isOver = true; } // time goes on no more

private:
    TimeMs _now = 0;
    TimeMs _lastFrame = 0;
    bool _isOver = false;
    SteadyClock::time_point _heardAt;
};

/// What the connections of one source have in common.
struct Common {
    std::string name;
    ReadOptions options;
    Origin origin;
    Handlers handlers;
    Counters counters;
    Present present;

    void say(std::string const& what) const { handlers.said(name + ": " + what); }
};

/// Reads one stream of bytes to its end. It must outlive its pending reads: whoever holds it stops it first
/// and keeps it until `ended` was called.
template <class Stream> class Reading {
public:
    using Ended = std::function<void(std::error_code const& error)>;

    Reading(Stream stream, Common& common, Ended ended)
        : _stream(std::move(stream))
        , _common(common)
        , _ended(std::move(ended))
        , _settling(_stream.get_executor())
        , _input(common.options, common.origin, common.counters) {}

    void setEnded(Ended ended) { _ended = std::move(ended); }

    void start() { read(); }

    void stop() {
        std::error_code ignored;
        _settling.cancel();
        _stream.close(ignored);
    }

    bool hadFrames() const { return _hadFrames; }
    TimeMs now() const { return _present.now(); }
    /// Why it is not read on, when its encoding cannot be told.
    std::optional<UnknownEncoding> unknownEncoding(std::string const& name) const {
        return _isHopeless ? std::optional<UnknownEncoding>(std::in_place, name, _looksLike) : std::nullopt;
    }

private:
    void read() {
        _stream.async_read_some(asio::buffer(_bytes),
                                [this](std::error_code const& error, std::size_t count) {
                                    if (error) return end(error);
                                    unpack(std::string_view(_bytes.data(), count));
                                    if (_isHopeless || _isDamaged) return end(asio::error::invalid_argument);
                                    settleLater();
                                    read();
                                });
    }

    // Piece by piece, of which a compressed one may become very many.
    void unpack(std::string_view bytes) {
        if (!_hasBegun) _decompressor = Decompressor::forFile(bytes);
        _hasBegun = true;
        if (!_decompressor) return feed(bytes);
        for (std::string plain; !_isHopeless && !_isDamaged; plain.clear()) {
            _isDamaged = !_decompressor->unpack(bytes, plain);
            if (_isDamaged) _common.say("its compressed data is damaged");
            if (plain.empty() && bytes.empty()) return;
            feed(plain);
        }
    }

    void feed(std::string_view bytes) {
        take([&](Frames& frames) { _input.feed(bytes, _common.handlers.hostTime(), frames); });
    }

    void settleLater() {
        if (!_input.isUnsettled() || _isSettling) return;
        _isSettling = true;
        _settling.expires_after(kSettleAfter);
        _settling.async_wait([this](std::error_code const& error) {
            _isSettling = false;
            if (error) return;
            take([&](Frames& frames) { _input.settle(_common.handlers.hostTime(), frames); });
            if (_isHopeless) stop();
        });
    }

    template <class Step> void take(Step const& step) {
        Frames frames;
        try {
            step(frames);
        } catch (UnknownEncoding const& unknown) {
            _isHopeless = true;
            _looksLike = unknown.looksLike();
        }
        if (!frames.empty()) {
            _hadFrames = true;
            auto const last = frames.back().record->timeStamp();
            _common.handlers.heard(frames);
            _present.heard(_input.clock().now(), last);
            _common.present = _present;
        }
        if (auto const complaint = _input.complaint(); !complaint.empty()) _common.say(complaint);
    }

    void end(std::error_code const& error) {
        _settling.cancel();
        if (_decompressor && !_isDamaged && error == asio::error::eof && !_decompressor->isWhole())
            _common.say("its compressed data is cut short");
        if (!_isHopeless) take([&](Frames& frames) { _input.finish(_common.handlers.hostTime(), frames); });
        std::error_code ignored;
        _stream.close(ignored);
        _ended(error);
    }

    Stream _stream;
    Common& _common;
    Ended _ended;
    asio::steady_timer _settling;
    StreamInput _input;
    Present _present;
    bool _isSettling = false;
    bool _hadFrames = false;
    bool _isHopeless = false; // a stream that is none of those known
    std::string _looksLike;   // then
    bool _hasBegun = false;
    bool _isDamaged = false;
    std::unique_ptr<Decompressor> _decompressor;
    std::array<char, kPieceBytes> _bytes;
};

/// A source whose connection is made again, after growing pauses, whenever it is lost.
template <class Stream> class Reconnecting : public LiveSource {
public:
    Reconnecting(Common common, asio::io_context& context)
        : _common(std::move(common)), _context(context), _pausing(context) {}

    void start() override { connect(); }

    void stop() override {
        _isStopped = true;
        _pausing.cancel();
        cancelConnecting();
        if (_reading) _reading->stop();
    }

    std::string state() const override { return _state; }
    TimeMs now() const override { return _common.present.now(); }
    TimeMs lastFrame() const override { return _common.present.lastFrame(); }
    Counters const& counters() const override { return _common.counters; }

protected:
    virtual void connect() = 0;
    virtual void cancelConnecting() {}

    void connected(Stream stream) {
        if (_isStopped) return;
        if (_wasConnected) ++_common.counters.reconnections;
        if (_wasConnected || _isTold) _common.say(_wasConnected ? "connected again" : "connected");
        _wasConnected = true;
        _isTold = false;
        _state = "connected";
        _reading = std::make_unique<Reading<Stream>>(std::move(stream), _common,
                                                     [this](std::error_code const& error) { lost(error); });
        _reading->start();
    }

    void failed(std::string const& why) {
        if (_isStopped) return;
        _state = "waiting to connect again";
        if (!_isTold) _common.say(why + "; trying again until it works");
        _isTold = true;
        _pausing.expires_after(_pause.next());
        _pausing.async_wait([this](std::error_code const& error) {
            if (!error) connect();
        });
    }

    Common _common;
    asio::io_context& _context;

private:
    void lost(std::error_code const& error) {
        if (_reading->hadFrames()) _pause.reset();
        std::shared_ptr<Reading<Stream>> const reading = std::move(_reading); // it calls this function
        asio::post(_context, [reading] {});
        auto const unknown = reading->unknownEncoding("what it sends");
        failed(unknown ? unknown->what() : lossOf(error));
    }

    static std::string lossOf(std::error_code const& error) {
        if (error == asio::error::eof) return "the connection was closed";
        return "the connection was lost: " + error.message();
    }

    asio::steady_timer _pausing;
    GrowingPause _pause;
    std::unique_ptr<Reading<Stream>> _reading;
    std::string _state = "connecting";
    bool _isStopped = false;
    bool _wasConnected = false;
    bool _isTold = false;
};

class TcpSource : public Reconnecting<tcp::socket> {
public:
    TcpSource(SourceSpec const& spec, Common common, asio::io_context& context)
        : Reconnecting(std::move(common), context), _spec(spec), _resolver(context), _socket(context) {}

private:
    void connect() override {
        _resolver.async_resolve(
            _spec.host, _spec.port, [this](std::error_code const& error, auto const& endpoints) {
                if (error) return failed("cannot find " + _spec.host + ": " + error.message());
                _socket = tcp::socket(_context);
                asio::async_connect(_socket, endpoints,
                                    [this](std::error_code const& failure, tcp::endpoint const&) {
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

class SerialSource : public Reconnecting<asio::serial_port> {
public:
    SerialSource(SourceSpec const& spec, Common common, asio::io_context& context)
        : Reconnecting(std::move(common), context), _spec(spec) {}

private:
    void connect() override {
        asio::serial_port port(_context);
        std::error_code error;
        port.open(_spec.path, error);
        if (!error) port.set_option(asio::serial_port::baud_rate(_spec.baud), error);
        if (error) return failed("cannot open " + _spec.path + ": " + error.message());
        connected(std::move(port));
    }

    SourceSpec _spec;
};

/// A pipe, a terminal, a device: read once, to its end.
class PipeSource : public LiveSource {
public:
    PipeSource(SourceSpec const& spec, Common common, asio::io_context& context)
        : _path(spec.path), _common(std::move(common)), _context(context) {}

    void start() override {
        int const file = _path == "-" ? ::dup(STDIN_FILENO)
                                      : ::open(_path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
        if (file < 0) throw systemError("read", _common.name);
        _reading = std::make_unique<Reading<asio::posix::stream_descriptor>>(
            asio::posix::stream_descriptor(_context, file), _common, [this](std::error_code const&) {
                _state = "ended";
                _common.present.end();
                if (auto const unknown = _reading->unknownEncoding(_common.name)) {
                    _common.handlers.failed(std::make_exception_ptr(*unknown));
                } else {
                    _common.handlers.ended();
                }
            });
        _reading->start();
    }

    void stop() override {
        if (_reading) _reading->stop();
    }
    std::string state() const override { return _state; }
    TimeMs now() const override { return _common.present.now(); }
    TimeMs lastFrame() const override { return _common.present.lastFrame(); }
    Counters const& counters() const override { return _common.counters; }

private:
    std::string _path;
    Common _common;
    asio::io_context& _context;
    std::unique_ptr<Reading<asio::posix::stream_descriptor>> _reading;
    std::string _state = "reading";
};

/// Feeders connect to it, several at once; each has its own encoding and its own clock.
class ListenSource : public LiveSource {
public:
    ListenSource(SourceSpec const& spec, Common common, asio::io_context& context)
        : _spec(spec)
        , _common(std::move(common))
        , _context(context)
        , _acceptor(context, [this](tcp::socket socket) { take(std::move(socket)); }) {}

    void start() override { _acceptor.listen({_spec.host, _spec.port}, _common.name, _common.handlers.said); }

    void stop() override {
        _acceptor.stop();
        for (auto& feeder : _feeders) feeder.stop();
    }

    std::string state() const override {
        auto const count = std::to_string(_feeders.size());
        return _feeders.empty() ? "waiting for feeders"
                                : count + (_feeders.size() == 1 ? " feeder" : " feeders");
    }
    // The latest of the feeders' clocks; when all are gone, the last that was heard goes on.
    TimeMs now() const override {
        TimeMs latest = 0;
        for (auto const& feeder : _feeders) latest = std::max(latest, feeder.now());
        return latest == 0 ? _common.present.now() : latest;
    }
    TimeMs lastFrame() const override { return _common.present.lastFrame(); }
    Counters const& counters() const override { return _common.counters; }

private:
    using Feeder = Reading<tcp::socket>;

    void take(tcp::socket socket) {
        std::error_code ignored;
        auto const endpoint = socket.remote_endpoint(ignored);
        auto const peer = endpoint.address().to_string() + " port " + std::to_string(endpoint.port());
        if (_feeders.size() == kMostFeeders) {
            _common.say("feeder " + peer + " was turned away: there are " + std::to_string(kMostFeeders) +
                        " already");
            return;
        }
        keepAlive(socket);
        _common.say("feeder " + peer + " connected");
        auto const place = _feeders.emplace(_feeders.end(), std::move(socket), _common, nullptr);
        place->setEnded([this, place, peer](std::error_code const&) {
            if (auto const unknown = place->unknownEncoding("feeder " + peer))
                _common.handlers.said(unknown->what());
            _common.say("feeder " + peer + " went away");
            asio::post(_context, [this, place] { _feeders.erase(place); });
        });
        place->start();
    }

    SourceSpec _spec;
    Common _common;
    asio::io_context& _context;
    PortAcceptor _acceptor;
    std::list<Feeder> _feeders;
};

} // namespace

std::unique_ptr<LiveSource> LiveSource::make(SourceSpec const& spec, ReadOptions const& options,
                                             asio::io_context& context, Handlers handlers) {
    auto const name = spec.path == "-" ? "standard input" : spec.name;
    auto const origin = spec.kind == SourceSpec::Kind::File ? Origin::Pipe : Origin::Connection;
    Common common{name, options, origin, std::move(handlers), {}, {}};
    switch (spec.kind) {
    case SourceSpec::Kind::Tcp: return std::make_unique<TcpSource>(spec, std::move(common), context);
    case SourceSpec::Kind::Listen: return std::make_unique<ListenSource>(spec, std::move(common), context);
    case SourceSpec::Kind::Serial: return std::make_unique<SerialSource>(spec, std::move(common), context);
    case SourceSpec::Kind::File: break;
    }
    return std::make_unique<PipeSource>(spec, std::move(common), context);
}

} // namespace quorvel::host
