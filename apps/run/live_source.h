// SPDX-License-Identifier: MIT
#pragma once

#include "host/counters.h"
#include "host/frame.h"
#include "host/stream_input.h"
#include "run/source_spec.h"

#include <asio/io_context.hpp>

#include <exception>
#include <functional>
#include <memory>
#include <string>

namespace quorvel::host {

/// A source whose frames come when they come: a network connection, feeders, a serial receiver, a pipe. It
/// lives on the loop of an io_context and says in a line what happens to it.
class LiveSource {
public:
    struct Handlers {
        std::function<void(Frames& frames)> heard;         ///< frames, with their times
        std::function<void(std::string const& line)> said; ///< something that the user should hear of
        std::function<void()> ended;                       ///< nothing comes any more
        std::function<void(std::exception_ptr)> failed;    ///< nothing comes any more, for this reason
        std::function<TimeMs()> hostTime;                  ///< the host's clock
    };

    static std::unique_ptr<LiveSource> make(SourceSpec const& spec, ReadOptions const& options,
                                            asio::io_context& context, Handlers handlers);

    virtual ~LiveSource() = default;

    /// Begins to read. Throws HostError when that can never work: a port in use, a file that is not there.
    virtual void start() = 0;

    /// Stops reading and hands over what is left.
    virtual void stop() = 0;

    virtual std::string state() const = 0; ///< "connected", "waiting to connect again", …

    /// The present of its stream; goes on with the host's clock while nothing comes. 0 before the first
    /// frame.
    virtual TimeMs now() const = 0;
    virtual TimeMs lastFrame() const = 0; ///< when the last frame was received; 0 when there was none

    virtual Counters const& counters() const = 0; ///< of bytes, framing and time
};

} // namespace quorvel::host
