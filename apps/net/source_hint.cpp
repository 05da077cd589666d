// SPDX-License-Identifier: MIT
#include "net/source_hint.h"

#include "net/endpoint.h"

#include <asio/ip/address.hpp>

#include <algorithm>
#include <optional>
#include <string_view>
#include <system_error>

namespace quorvel::net {

namespace {

constexpr char kCustomaryPort[] = ":30005"; // on which receivers offer Beast

std::optional<asio::ip::address> addressOf(std::string const& name) {
    std::error_code error;
    auto const address = asio::ip::make_address(name, error);
    if (error) return {};
    return address;
}

// "HOST:PORT", the host perhaps empty.
struct HostAndPort {
    std::string host;
    bool hasPort = false;
};

HostAndPort splitPort(std::string const& name) {
    auto const colon = name.rfind(':');
    if (colon == std::string::npos || !isPortNumber(name.substr(colon + 1))) return {name, false};
    return {name.substr(0, colon), true};
}

bool isLetter(char character) {
    return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
}

bool isOfHostCharacters(std::string_view name) {
    return std::ranges::any_of(name, isLetter) && std::ranges::all_of(name, [](char character) {
        return isLetter(character) || (character >= '0' && character <= '9') || character == '-' || character == '.';
    });
}

// The scheme without its slashes: "tcp:localhost:30005".
bool lacksSlashes(std::string const& name) { return name.starts_with("tcp:") || name.starts_with("listen:"); }

bool isPortAlone(std::string const& name) {
    auto const [host, hasPort] = splitPort(name);
    return (hasPort && host.empty()) || isPortNumber(name);
}

bool isAddress4(std::string const& name) {
    auto const address = addressOf(name);
    return address && address->is_v4();
}

bool isAddress6(std::string const& name) {
    auto const address = addressOf(name);
    return address && address->is_v6();
}

bool isHostWithPort(std::string const& name) { return splitPort(name).hasPort && name.find('/') == std::string::npos; }

// Most files have an ending, most hosts of a home network have none or one of these.
bool isHost(std::string const& name) {
    constexpr std::string_view kEndings[] = {".local", ".lan", ".home", ".home.arpa", ".internal", ".fritz.box"};
    bool const isEnding = std::ranges::any_of(kEndings, [&](auto ending) { return name.ends_with(ending); });
    return isOfHostCharacters(name) && (isEnding || name.find('.') == std::string::npos);
}

std::string onNetwork(std::string const& endpoint) { return "a receiver on the network is named tcp://" + endpoint; }

std::string withSlashes(std::string const& name) {
    auto const colon = name.find(':');
    auto const rest = std::min(name.find_first_not_of('/', colon + 1), name.size());
    return "it is written " + name.substr(0, colon) + "://" + name.substr(rest);
}

std::string hereOrFeeders(std::string const& name) {
    auto const port = name.substr(name.find(':') + 1);
    return "a receiver on this machine is named tcp://localhost:" + port + ", a port for feeders listen://" + port;
}

std::string onCustomaryPort(std::string const& host) { return onNetwork(host + kCustomaryPort); }

std::string inBrackets(std::string const& address) { return onNetwork("[" + address + "]" + kCustomaryPort); }

// A name is what the first of these takes it for.
constexpr struct {
    bool (*isLike)(std::string const& name);
    std::string (*hint)(std::string const& name);
} kHints[] = {
    {lacksSlashes, withSlashes},
    {isPortAlone, hereOrFeeders},
    {isAddress4, onCustomaryPort},
    {isAddress6, inBrackets},
    {isHostWithPort, onNetwork},
    {isHost, onCustomaryPort},
};

} // namespace

std::string sourceHint(std::string const& name) {
    for (auto const& [isLike, hint] : kHints) {
        if (isLike(name)) return hint(name);
    }
    return {};
}

} // namespace quorvel::net
