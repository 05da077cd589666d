// SPDX-License-Identifier: MIT
#pragma once

#include "net/live_source.h"
#include "net/source_common.h"
#include "net/source_spec.h"

#include <asio/io_context.hpp>

#include <memory>

namespace quorvel::net {

using SourceMaker = std::unique_ptr<LiveSource>(SourceSpec const& spec, SourceCommon common, asio::io_context& context);

SourceMaker makePipeSource;   ///< a pipe, a terminal, a device: read once, to its end
SourceMaker makeTcpSource;    ///< a receiver or aggregator to connect to
SourceMaker makeListenSource; ///< feeders that connect, several at once
SourceMaker makeSerialSource; ///< a receiver on a serial line

} // namespace quorvel::net
