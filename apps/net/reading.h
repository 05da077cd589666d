// SPDX-License-Identifier: MIT
#pragma once

#include "files/host_error.h"
#include "net/source_common.h"
#include <airspace/decompressor.h>
#include <airspace/stream.h>

#include <asio/buffer.hpp>
#include <asio/error.hpp>
#include <asio/steady_timer.hpp>

#include <array>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace quorvel::net {

/// Reads one stream of bytes to its end. It must outlive its pending reads: its owner stops it first
/// and keeps it until `ended` was called.
template <class Stream> class Reading {
public:
    using Ended = std::function<void(std::error_code const& error)>;

    Reading(Stream stream, SourceCommon& common, Ended ended)
        : _stream(std::move(stream))
        , _common(common)
        , _ended(std::move(ended))
        , _settling(_stream.get_executor())
        , _input(common.options) {}

    void setEnded(Ended ended) { _ended = std::move(ended); }

    void start() { read(); }

    void stop() {
        std::error_code ignored;
        _settling.cancel();
        _stream.close(ignored);
    }

    /// What was counted since it started, while it runs; after that it is counted with the source.
    airspace::Counts counts() const { return _hasEnded ? airspace::Counts() : _input.counts(); }

    bool hadFrames() const { return _hadFrames; }
    airspace::TimeMs now() const { return _present.now(); }

    /// Why reading stopped, when the encoding cannot be recognized.
    std::optional<files::UnknownEncoding> unknownEncoding(std::string const& name) const {
        return _isUnknown
                   ? std::optional<files::UnknownEncoding>(std::in_place, name, std::string(_input.otherContent()))
                   : std::nullopt;
    }

private:
    static constexpr std::size_t kPieceBytes = 64 * 1024;
    static constexpr std::chrono::seconds kSettleAfter{1}; // how long the start of a slow stream may take

    airspace::TimeMs hostTime() const { return _common.handlers.hostTime(); }

    void read() {
        _stream.async_read_some(asio::buffer(_bytes), [this](std::error_code const& error, std::size_t count) {
            if (error) return end(error);
            unpack(std::string_view(_bytes.data(), count));
            if (_isUnknown || _isDamaged) return end(asio::error::invalid_argument);
            settleLater();
            read();
        });
    }

    // Piece by piece: compressed bytes may unpack to very many.
    void unpack(std::string_view bytes) {
        if (!_hasBegun) _decompressor = airspace::Decompressor::forStream(bytes);
        _hasBegun = true;
        if (!_decompressor) return feed(bytes);
        for (std::string plain; !_isUnknown && !_isDamaged; plain.clear()) {
            _isDamaged = !_decompressor->unpack(bytes, plain);
            if (_isDamaged) _common.say("its compressed data is damaged");
            if (plain.empty() && bytes.empty()) return;
            feed(plain);
        }
    }

    void feed(std::string_view bytes) {
        take([&](airspace::Frames& frames) { return _input.feed(bytes, hostTime(), frames); });
    }

    void settleLater() {
        if (!_input.isUnsettled() || _isSettling) return;
        _isSettling = true;
        _settling.expires_after(kSettleAfter);
        _settling.async_wait([this](std::error_code const& error) {
            _isSettling = false;
            if (error) return;
            take([&](airspace::Frames& frames) { return _input.settle(hostTime(), frames); });
            if (_isUnknown) stop();
        });
    }

    template <class Step> void take(Step const& step) {
        airspace::Frames frames;
        _isUnknown = !step(frames);
        if (!frames.empty()) {
            _hadFrames = true;
            auto const last = frames.back().time;
            _common.handlers.heard(frames);
            _present.heard(_input.now(), last);
            _common.present = _present;
        }
        if (auto const remark = _input.remark(); !remark.empty()) _common.say(remark);
    }

    void end(std::error_code const& error) {
        _settling.cancel();
        if (_decompressor && !_isDamaged && error == asio::error::eof && !_decompressor->isWhole())
            _common.say("its compressed data is cut short");
        if (!_isUnknown) take([&](airspace::Frames& frames) { return _input.finish(hostTime(), frames); });
        _common.counters += _input.counts();
        _hasEnded = true;
        std::error_code ignored;
        _stream.close(ignored);
        _ended(error);
    }

    Stream _stream;
    SourceCommon& _common;
    Ended _ended;
    asio::steady_timer _settling;
    airspace::Stream _input;
    LiveClock _present;
    bool _isSettling = false;
    bool _hadFrames = false;
    bool _isUnknown = false; // a stream of no known encoding
    bool _hasEnded = false;
    bool _hasBegun = false;
    bool _isDamaged = false;
    std::unique_ptr<airspace::Decompressor> _decompressor;
    std::array<char, kPieceBytes> _bytes;
};

} // namespace quorvel::net
