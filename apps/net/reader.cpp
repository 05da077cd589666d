// SPDX-License-Identifier: MIT
#include "net/reader.h"

#include "net/keep_alive.h"

#include <asio/write.hpp>

#include <utility>

namespace quorvel::net {

namespace {

constexpr std::size_t kPieceBytes = 64 * 1024;

} // namespace

void Reader::start(asio::ip::tcp::socket socket, std::function<void()> gone) {
    _socket = std::move(socket);
    _gone = std::move(gone);
    keepAlive(*_socket);
    read();
    flush();
}

// What a reader sends is discarded; reading only detects that it went away.
void Reader::read() {
    _socket->async_read_some(
        asio::buffer(_ignored), [self = shared_from_this()](std::error_code const& error, std::size_t) {
            if (error) return self->end();
            self->read();
        });
}

void Reader::write(std::string_view item) {
    if (_isGone) return;
    _items.emplace_back(item);
    _bytes += item.size();
    for (; _bytes > kMostQueuedBytes; ++_counters.outputDropped) {
        _bytes -= _items.front().size();
        _items.pop_front();
    }
    if (_bytes >= kPieceBytes) flush();
}

void Reader::flush() {
    if (!_socket || _isWriting || _items.empty() || _isGone) return;
    _piece.clear();
    for (; !_items.empty() && _piece.size() < kPieceBytes; _items.pop_front()) {
        _piece += _items.front();
        _bytes -= _items.front().size();
    }
    _isWriting = true;
    asio::async_write(
        *_socket, asio::buffer(_piece), [self = shared_from_this()](std::error_code const& error, std::size_t) {
            self->_isWriting = false;
            if (error) return self->end();
            self->flush();
        });
}

void Reader::stop() {
    std::error_code ignored;
    if (_socket) _socket->close(ignored);
}

void Reader::end() {
    if (_isGone) return;
    _isGone = true;
    _items.clear();
    stop();
    _gone();
}

} // namespace quorvel::net
