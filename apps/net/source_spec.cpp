// SPDX-License-Identifier: MIT
#include "net/source_spec.h"

#include "files/host_error.h"
#include "net/endpoint.h"
#include "net/schemed_name.h"
#include "net/source_hint.h"
#include "net/whole_number.h"

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <iterator>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace quorvel::net {

namespace {

constexpr unsigned kSlowestBaud = 300;
constexpr unsigned kFastestBaud = 4'000'000;

SourceSpec serial(std::string const& text, std::string const& rest) {
    SourceSpec spec{SourceSpec::Kind::Serial, text, {}, {}, {}, SourceSpec::kDefaultBaud};
    auto const query = rest.find('?');
    spec.path = rest.substr(0, query);
    if (query != std::string::npos) {
        constexpr std::string_view kBaud = "baud=";
        auto const option = std::string_view(rest).substr(query + 1);
        auto const baud =
            option.starts_with(kBaud) ? wholeNumber(option.substr(kBaud.size()), kFastestBaud) : std::nullopt;
        if (!baud || *baud < kSlowestBaud) {
            throw files::UsageError("cannot use the source " + text +
                                    ": a serial receiver is named like serial:///dev/ttyUSB0?baud=3000000");
        }
        spec.baud = *baud;
    }
    if (!spec.path.starts_with('/')) {
        throw files::UsageError(
            "cannot use the source " + text + ": its device needs a whole path, like serial:///dev/ttyUSB0");
    }
    return spec;
}

SourceSpec file(std::string const& text, std::string const& rest) {
    return {SourceSpec::Kind::File, text, rest, {}, {}, 0};
}

SourceSpec tcp(std::string const& text, std::string const& rest) {
    auto const endpoint = parseConnection(text, rest);
    if (endpoint.host.empty())
        throw files::UsageError("cannot use the source " + text + ": it names no host, like tcp://localhost:30005");
    return {SourceSpec::Kind::Tcp, text, {}, endpoint.host, endpoint.port, 0};
}

SourceSpec listen(std::string const& text, std::string const& rest) {
    auto const endpoint = parseEndpoint(text, rest);
    return {SourceSpec::Kind::Listen, text, {}, endpoint.host, endpoint.port, 0};
}

struct Scheme {
    std::string_view scheme;
    SourceSpec (*parse)(std::string const& text, std::string const& rest);
};
constexpr Scheme kSchemes[] = {{"file", file}, {"tcp", tcp}, {"listen", listen}, {"serial", serial}};

SourceSpec fileOrHint(std::string const& text) {
    std::error_code ignored;
    auto const hint = std::filesystem::exists(text, ignored) ? "" : sourceHint(text);
    if (!hint.empty()) throw files::UsageError("there is no file " + text + ": " + hint);
    return file(text, text);
}

// Serial lines are terminals too.
bool isTerminal(std::string const& path) {
    if (path == "-") return ::isatty(STDIN_FILENO) != 0;
    int const file = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (file < 0) return false;
    bool const isOne = ::isatty(file) != 0;
    ::close(file);
    return isOne;
}

} // namespace

bool isRecording(SourceSpec const& spec) {
    if (spec.kind != SourceSpec::Kind::File) return false;
    struct stat status {};
    int const result = spec.path == "-" ? ::fstat(STDIN_FILENO, &status) : ::stat(spec.path.c_str(), &status);
    if (result != 0) return true; // opening it reports why
    return !S_ISFIFO(status.st_mode) && !S_ISSOCK(status.st_mode) &&
           !(S_ISCHR(status.st_mode) && isTerminal(spec.path));
}

SourceSpec parseSource(std::string const& text) {
    auto const [scheme, rest] = schemedName(text);
    if (scheme.empty()) return fileOrHint(text);
    auto const* const known = std::ranges::find(kSchemes, scheme, &Scheme::scheme);
    if (known == std::end(kSchemes)) {
        throw files::UsageError("cannot use the source " + text +
                                ": sources are files, -, tcp://HOST:PORT, listen://PORT and serial://DEVICE");
    }
    return known->parse(text, rest);
}

} // namespace quorvel::net
