// SPDX-License-Identifier: MIT
#include "run/source_spec.h"

#include "host/host_error.h"

#include <charconv>
#include <optional>
#include <string_view>

namespace quorvel::host {

namespace {

constexpr unsigned kLastPort = 65535;
constexpr unsigned kSlowestBaud = 300;
constexpr unsigned kFastestBaud = 4'000'000;

std::optional<unsigned> number(std::string_view text, unsigned most) {
    unsigned value = 0;
    auto const* const end = text.data() + text.size();
    auto const read = std::from_chars(text.data(), end, value);
    if (text.empty() || read.ec != std::errc() || read.ptr != end || value > most) return {};
    return value;
}

SourceSpec serial(std::string const& text, std::string_view rest) {
    SourceSpec spec{SourceSpec::Kind::Serial, text, {}, {}, {}, SourceSpec::kDefaultBaud};
    auto const query = rest.find('?');
    spec.path = rest.substr(0, query);
    if (query != std::string_view::npos) {
        constexpr std::string_view kBaud = "baud=";
        auto const option = rest.substr(query + 1);
        auto const baud =
            option.starts_with(kBaud) ? number(option.substr(kBaud.size()), kFastestBaud) : std::nullopt;
        if (!baud || *baud < kSlowestBaud) {
            throw UsageError("cannot use the source " + text +
                             ": a serial receiver is named like serial:///dev/ttyUSB0?baud=3000000");
        }
        spec.baud = *baud;
    }
    if (!spec.path.starts_with('/')) {
        throw UsageError("cannot use the source " + text +
                         ": its device needs a whole path, like serial:///dev/ttyUSB0");
    }
    return spec;
}

// The host and port of something that the user has called by a name.
Endpoint endpointOf(std::string const& name, std::string_view rest) {
    Endpoint endpoint;
    auto const colon = rest.rfind(':');
    if (colon != std::string_view::npos) {
        auto host = rest.substr(0, colon);
        rest.remove_prefix(colon + 1);
        if (host.size() >= 2 && host.front() == '[' && host.back() == ']') {
            host = host.substr(1, host.size() - 2);
        } else if (host.find(':') != std::string_view::npos) {
            throw UsageError("cannot use " + name +
                             ": an address with colons stands in brackets, like [::1]:30005");
        }
        endpoint.host = host;
    }
    if (!number(rest, kLastPort))
        throw UsageError("cannot use " + name + ": it ends with no port from 0 to 65535");
    endpoint.port = rest;
    return endpoint;
}

} // namespace

Endpoint parseEndpoint(std::string const& text) { return endpointOf(text, text); }

SourceSpec parseSource(std::string const& text) {
    auto const scheme = text.find("://");
    if (scheme == std::string::npos) return {SourceSpec::Kind::File, text, text, {}, {}, 0};
    auto const name = text.substr(0, scheme);
    auto const rest = text.substr(scheme + 3);
    if (name == "serial") return serial(text, rest);
    if (name == "file") return {SourceSpec::Kind::File, text, rest, {}, {}, 0};
    if (name != "tcp" && name != "listen") {
        throw UsageError("cannot use the source " + text +
                         ": sources are files, -, tcp://HOST:PORT, listen://PORT and serial://DEVICE");
    }
    auto const endpoint = endpointOf(text, rest);
    if (name == "listen") return {SourceSpec::Kind::Listen, text, {}, endpoint.host, endpoint.port, 0};
    if (endpoint.host.empty()) {
        throw UsageError("cannot use the source " + text + ": it names no host, like tcp://localhost:30005");
    }
    return {SourceSpec::Kind::Tcp, text, {}, endpoint.host, endpoint.port, 0};
}

} // namespace quorvel::host
