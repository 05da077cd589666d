// SPDX-License-Identifier: MIT
#pragma once

#include "host/counters.h"
#include "host/output.h"
#include "run/reader.h"

#include <asio/io_context.hpp>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace quorvel::host {

/// What outputs on the network have in common: the loop they live on, where they count what readers were too
/// slow for, and who tells the user of them.
class NetworkOutputs {
public:
    using Say = std::function<void(std::string const& line)>;

    NetworkOutputs(asio::io_context& context, Counters& counters, Say say)
        : _context(context), _counters(counters), _say(std::move(say)) {}

    asio::io_context& context() const { return _context; }
    Counters& counters() const { return _counters; }
    void say(std::string const& line) const { _say(line); }

    /// Takes note of a reader, so that it is waited for at the end.
    void add(std::shared_ptr<Reader> const& reader);

    /// Whether all readers have what was written for them.
    bool isIdle() const;

private:
    asio::io_context& _context;
    Counters& _counters;
    Say _say;
    std::vector<std::weak_ptr<Reader>> _readers;
};

/// Where an output goes, as the user names it: a file, "-" for standard output, ":PORT" or
/// "listen://[HOST:]PORT" for a port to which readers connect, or "tcp://HOST:PORT" for a reader to connect
/// to, again and again until it works. Throws HostError when it cannot be opened.
std::unique_ptr<Sink> makeSink(std::string const& target, NetworkOutputs& network);

/// Whether a target is a port to which readers connect.
bool isPort(std::string const& target);

/// Serves one text, made anew for each reader, by HTTP on a port, while it lives.
class TextServer {
public:
    virtual ~TextServer() = default;

    /// Throws HostError when the port cannot be had.
    static std::unique_ptr<TextServer> make(std::string const& target, std::string contentType,
                                            std::function<std::string()> text, NetworkOutputs& network);
};

} // namespace quorvel::host
