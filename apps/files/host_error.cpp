// SPDX-License-Identifier: MIT
#include "files/host_error.h"

#include <cerrno>
#include <system_error>
#include <utility>

namespace quorvel::files {

namespace {

std::string explanationOf(std::string const& looksLike) {
    if (!looksLike.empty())
        return "this looks like " + looksLike + "; expected AVR text, a Beast stream, raw binary or hexadecimal lines";
    return "it does not look like AVR text, a Beast stream, raw binary or hexadecimal lines (if it is one of "
           "these, name it with --format)";
}

} // namespace

UnknownEncoding::UnknownEncoding(std::string const& name, std::string looksLike)
    : HostError("cannot detect the format of " + name + ": " + explanationOf(looksLike))
    , _looksLike(std::move(looksLike)) {}

HostError systemError(std::string const& what, std::string const& name) {
    auto const code = errno;
    return HostError("cannot " + what + " " + name + ": " + std::generic_category().message(code), code);
}

} // namespace quorvel::files
