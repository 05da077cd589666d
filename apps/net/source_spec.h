// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace quorvel::net {

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
    std::string host; ///< empty: any address of this machine
    std::string port;
    unsigned baud = kDefaultBaud;
};

/// Takes schemes in upper and lower case. Throws UsageError that says what is wrong with it, and what was probably
/// meant.
SourceSpec parseSource(std::string const& text);

/// Whether a source is a file that is read to its end; pipes and terminals give their data as it comes.
bool isRecording(SourceSpec const& spec);

} // namespace quorvel::net
