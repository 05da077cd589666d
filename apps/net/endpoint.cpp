// SPDX-License-Identifier: MIT
#include "net/endpoint.h"

#include "files/host_error.h"
#include "net/whole_number.h"

namespace quorvel::net {

namespace {

constexpr unsigned kLastPort = 65535;

} // namespace

bool isPortNumber(std::string_view text) { return wholeNumber(text, kLastPort).has_value(); }

Endpoint parseEndpoint(std::string const& name, std::string_view text) {
    Endpoint endpoint;
    auto const colon = text.rfind(':');
    if (colon != std::string_view::npos) {
        auto host = text.substr(0, colon);
        text.remove_prefix(colon + 1);
        if (host.size() >= 2 && host.front() == '[' && host.back() == ']') {
            host = host.substr(1, host.size() - 2);
        } else if (host.find(':') != std::string_view::npos) {
            throw files::UsageError("cannot use " + name + ": an address with colons needs brackets, like [::1]:30005");
        }
        endpoint.host = host;
    }
    if (!isPortNumber(text))
        throw files::UsageError("cannot use " + name + ": it does not end with a port from 0 to 65535");
    endpoint.port = text;
    return endpoint;
}

Endpoint parseConnection(std::string const& name, std::string_view text) {
    bool const isHostAlone = text.ends_with(']') || text.find(':') == std::string_view::npos;
    if (isHostAlone && !text.empty())
        throw files::UsageError("cannot use " + name + ": it names no port, like " + name + ":30005");
    return parseEndpoint(name, text);
}

} // namespace quorvel::net
