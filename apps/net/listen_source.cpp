// SPDX-License-Identifier: MIT
#include "net/acceptor.h"
#include "net/keep_alive.h"
#include "net/reading.h"
#include "net/source_makers.h"

#include <asio/ip/tcp.hpp>
#include <asio/post.hpp>

#include <algorithm>
#include <list>

namespace quorvel::net {

namespace {

using asio::ip::tcp;

constexpr std::size_t kMostFeeders = 64;

/// Feeders connect to it, several at once; each has its own encoding and its own clock.
class ListenSource : public LiveSource {
public:
    ListenSource(SourceSpec const& spec, SourceCommon common, asio::io_context& context)
        : _spec(spec)
        , _common(std::move(common))
        , _context(context)
        , _acceptor(context, [this](tcp::socket socket) { take(std::move(socket)); }) {}

    void start() override { _acceptor.listen({_spec.host, _spec.port}, _common.name, _common.handlers.message); }

    void stop() override {
        _acceptor.stop();
        for (auto& feeder : _feeders) feeder.stop();
    }

    std::string state() const override {
        auto const count = std::to_string(_feeders.size());
        return _feeders.empty() ? "waiting for feeders" : count + (_feeders.size() == 1 ? " feeder" : " feeders");
    }
    // The latest of the feeders' clocks; when all are gone, the last one continues.
    airspace::TimeMs now() const override {
        airspace::TimeMs latest = 0;
        for (auto const& feeder : _feeders) latest = std::max(latest, feeder.now());
        return latest == 0 ? _common.present.now() : latest;
    }
    airspace::TimeMs lastFrame() const override { return _common.present.lastFrame(); }
    outputs::Counters counters() const override {
        auto counters = _common.counters;
        for (auto const& feeder : _feeders) counters += feeder.counts();
        return counters;
    }

private:
    using Feeder = Reading<tcp::socket>;

    void take(tcp::socket socket) {
        std::error_code ignored;
        auto const endpoint = socket.remote_endpoint(ignored);
        auto const peer = endpoint.address().to_string() + " port " + std::to_string(endpoint.port());
        if (_feeders.size() == kMostFeeders) {
            _common.say("feeder " + peer + " was refused: there are " + std::to_string(kMostFeeders) + " already");
            return;
        }
        keepAlive(socket);
        _common.say("feeder " + peer + " connected");
        auto const place = _feeders.emplace(_feeders.end(), std::move(socket), _common, nullptr);
        place->setEnded([this, place, peer](std::error_code const&) {
            if (auto const unknown = place->unknownEncoding("feeder " + peer))
                _common.handlers.message(unknown->what());
            _common.say("feeder " + peer + " disconnected");
            asio::post(_context, [this, place] { _feeders.erase(place); });
        });
        place->start();
    }

    SourceSpec _spec;
    SourceCommon _common;
    asio::io_context& _context;
    PortAcceptor _acceptor;
    std::list<Feeder> _feeders;
};

} // namespace

std::unique_ptr<LiveSource> makeListenSource(SourceSpec const& spec, SourceCommon common, asio::io_context& context) {
    return std::make_unique<ListenSource>(spec, std::move(common), context);
}

} // namespace quorvel::net
