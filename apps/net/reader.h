// SPDX-License-Identifier: MIT
#pragma once

#include "outputs/counters.h"

#include <asio/ip/tcp.hpp>

#include <array>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace quorvel::net {

/// One reader of an output on the network, with what waits for it. A reader that is too slow loses the oldest
/// items, which are counted, and holds up nobody.
class Reader : public std::enable_shared_from_this<Reader> {
public:
    /// Enough for a snapshot of each aircraft of a full table.
    static constexpr std::size_t kMostQueuedBytes = 16 * 1024 * 1024;

    /// Not connected yet: what is written waits for it. The counters must live as long as the reader.
    explicit Reader(outputs::Counters& counters) : _counters(counters) {}

    /// Starts, once it is connected; `gone` is called once, when the reader went away.
    void start(asio::ip::tcp::socket socket, std::function<void()> gone);

    /// Queues an item, which reaches the reader whole or not at all.
    void write(std::string_view item);

    /// Sends what is queued, as fast as the reader takes it.
    void flush();

    void stop();

    bool isIdle() const { return _isGone || (_items.empty() && !_isWriting); }
    std::size_t waiting() const { return _items.size(); }

private:
    void read();
    void end();

    std::optional<asio::ip::tcp::socket> _socket;
    outputs::Counters& _counters;
    std::function<void()> _gone;
    std::deque<std::string> _items;
    std::size_t _bytes = 0; // in `_items`
    std::string _piece;     // being sent
    bool _isWriting = false;
    bool _isGone = false;
    std::array<char, 256> _ignored;
};

} // namespace quorvel::net
