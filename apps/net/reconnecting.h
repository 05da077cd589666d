// SPDX-License-Identifier: MIT
#pragma once

#include "net/backoff.h"
#include "net/reading.h"

#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <asio/steady_timer.hpp>

#include <memory>
#include <string>
#include <system_error>
#include <utility>

namespace quorvel::net {

/// A source that reconnects, after growing pauses, whenever its connection is lost.
template <class Stream> class Reconnecting : public LiveSource {
public:
    Reconnecting(SourceCommon common, asio::io_context& context)
        : _common(std::move(common)), _context(context), _pausing(context) {}

    void start() override { connect(); }

    void stop() override {
        _isStopped = true;
        _pausing.cancel();
        cancelConnecting();
        if (_reading) _reading->stop();
    }

    std::string state() const override { return _state; }
    airspace::TimeMs now() const override { return _common.present.now(); }
    airspace::TimeMs lastFrame() const override { return _common.present.lastFrame(); }
    outputs::Counters counters() const override { return _common.countersWith(_reading.get()); }

protected:
    virtual void connect() = 0;
    virtual void cancelConnecting() {}

    void connected(Stream stream) {
        if (_isStopped) return;
        if (_wasConnected) ++_common.counters.reconnections;
        if (_wasConnected || _isReported) _common.say(_wasConnected ? "connected again" : "connected");
        _wasConnected = true;
        _isReported = false;
        _state = "connected";
        _reading = std::make_unique<Reading<Stream>>(
            std::move(stream), _common, [this](std::error_code const& error) { lost(error); });
        _reading->start();
    }

    void failed(std::string const& why) {
        if (_isStopped) return;
        _state = "waiting to connect again";
        if (!_isReported) _common.say(why + "; trying again until it works");
        _isReported = true;
        _pausing.expires_after(_pause.next());
        _pausing.async_wait([this](std::error_code const& error) {
            if (!error) connect();
        });
    }

    SourceCommon _common;
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
    Backoff _pause;
    std::unique_ptr<Reading<Stream>> _reading;
    std::string _state = "connecting";
    bool _isStopped = false;
    bool _wasConnected = false;
    bool _isReported = false;
};

} // namespace quorvel::net
