// SPDX-License-Identifier: MIT
#pragma once

#include "net/source_spec.h"
#include "outputs/counters.h"
#include <airspace/frame.h>
#include <airspace/stream.h>

#include <asio/io_context.hpp>

#include <exception>
#include <functional>
#include <memory>
#include <string>

namespace quorvel::net {

/// A source whose frames arrive at their own pace: a network connection, feeders, a serial receiver, a pipe. It runs on
/// the loop of an io_context and reports in a line what happens to it.
class LiveSource {
public:
    struct Handlers {
        std::function<void(airspace::Frames& frames)> heard;  ///< frames, with their times
        std::function<void(std::string const& line)> message; ///< something that the user should know
        std::function<void()> ended;                          ///< nothing comes any more
        std::function<void(std::exception_ptr)> failed;       ///< nothing comes any more, for this reason
        std::function<airspace::TimeMs()> hostTime;           ///< the host's clock
    };

    static std::unique_ptr<LiveSource> make(
        SourceSpec const& spec, airspace::StreamOptions const& options, asio::io_context& context, Handlers handlers);

    virtual ~LiveSource() = default;

    /// Starts reading. Throws HostError when that can never work: a port in use, a missing file.
    virtual void start() = 0;

    /// Stops reading and delivers what is left.
    virtual void stop() = 0;

    virtual std::string state() const = 0; ///< "connected", "waiting to connect again", …

    /// The present time of its stream; follows the host's clock while nothing comes. 0 before the first
    /// frame.
    virtual airspace::TimeMs now() const = 0;
    virtual airspace::TimeMs lastFrame() const = 0; ///< when the last frame was received; 0 when there was none

    virtual outputs::Counters counters() const = 0; ///< of bytes, framing and time
};

} // namespace quorvel::net
