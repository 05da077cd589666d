// SPDX-License-Identifier: MIT
#include "net/live_source.h"

#include "net/source_makers.h"

#include <cstddef>
#include <iterator>
#include <utility>

namespace quorvel::net {

namespace {

constexpr SourceMaker* kMakers[] = {
    makePipeSource, makeTcpSource, makeListenSource, makeSerialSource}; // in the order of SourceSpec::Kind
static_assert(static_cast<std::size_t>(SourceSpec::Kind::Serial) + 1 == std::size(kMakers));

} // namespace

std::unique_ptr<LiveSource> LiveSource::make(
    SourceSpec const& spec, airspace::StreamOptions const& options, asio::io_context& context, Handlers handlers) {
    auto const name = spec.path == "-" ? "standard input" : spec.name;
    SourceCommon common{name, options, std::move(handlers), {}, {}};
    common.options.origin = spec.kind == SourceSpec::Kind::File ? airspace::Origin::Pipe : airspace::Origin::Connection;
    return kMakers[static_cast<std::size_t>(spec.kind)](spec, std::move(common), context);
}

} // namespace quorvel::net
