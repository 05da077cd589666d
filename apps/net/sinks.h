// SPDX-License-Identifier: MIT
#pragma once

#include "net/reader.h"
#include "outputs/counters.h"
#include "outputs/output.h"

#include <asio/io_context.hpp>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace quorvel::net {

/// What outputs on the network have in common: the loop they run on, where they count what readers were too slow for,
/// and how they report to the user.
class NetworkOutputs {
public:
    using Say = std::function<void(std::string const& line)>;

    NetworkOutputs(asio::io_context& context, outputs::Counters& counters, Say say)
        : _context(context), _counters(counters), _say(std::move(say)) {}

    asio::io_context& context() const { return _context; }
    outputs::Counters& counters() const { return _counters; }
    void say(std::string const& line) const { _say(line); }

    /// Adds a reader to those that are waited for at the end.
    void add(std::shared_ptr<Reader> const& reader);

    /// Whether all readers have what was written for them.
    bool isIdle() const;

private:
    asio::io_context& _context;
    outputs::Counters& _counters;
    Say _say;
    std::vector<std::weak_ptr<Reader>> _readers;
};

/// Where an output goes, as the user names it: a file, "-" for standard output, ":PORT" or
/// "listen://[HOST:]PORT" for a port to which readers connect, or "tcp://HOST:PORT" for a reader to connect
/// to, again and again until it works. Throws HostError when it cannot be opened, UsageError for any other scheme.
std::unique_ptr<outputs::Sink> makeSink(std::string const& target, NetworkOutputs& network);

/// Whether a target is a port to which readers connect.
bool isPort(std::string const& target);

/// Serves one text, made for each request, by HTTP on a port, while it lives.
class TextServer {
public:
    virtual ~TextServer() = default;

    /// Throws HostError when the port is not available.
    static std::unique_ptr<TextServer> make(
        std::string const& target, std::string contentType, std::function<std::string()> text, NetworkOutputs& network);
};

} // namespace quorvel::net
