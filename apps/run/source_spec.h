// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace quorvel::host {

/// One source of frames as the user names it.
struct SourceSpec {
    enum class Kind : std::uint8_t {
        File,   ///< a file, a named pipe, or "-" for standard input
        Tcp,    ///< "tcp://HOST:PORT": a receiver or aggregator to connect to
        Listen, ///< "listen://[HOST:]PORT": feeders connect to this program
        Serial, ///< "serial://DEVICE[?baud=RATE]"
    };

    static constexpr unsigned kDefaultBaud = 3'000'000;

    Kind kind = Kind::File;
    std::string name; ///< as given
    std::string path; ///< of a file or device
    std::string host; ///< empty: any of this machine's
    std::string port;
    unsigned baud = kDefaultBaud;
};

/// Throws UsageError that says what is wrong with it.
SourceSpec parseSource(std::string const& text);

/// "[HOST:]PORT", the host in brackets where it has colons: "30003", "127.0.0.1:30003", "[::1]:30003".
struct Endpoint {
    std::string host; ///< empty when not given
    std::string port; ///< 0 to 65535
};

/// Throws UsageError.
Endpoint parseEndpoint(std::string const& text);

} // namespace quorvel::host
