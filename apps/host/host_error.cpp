// SPDX-License-Identifier: MIT
#include "host/host_error.h"

#include <cerrno>
#include <system_error>

namespace quorvel::host {

UnknownEncoding::UnknownEncoding() : UnknownEncoding("the stream") {}

UnknownEncoding::UnknownEncoding(std::string const& name)
    : HostError("cannot tell the format of " + name +
                ": it begins like no AVR text, Beast stream, raw binary or hexadecimal lines (name it with "
                "--format "
                "if it is one)") {}

HostError systemError(std::string const& what, std::string const& name) {
    auto const code = errno;
    return HostError("cannot " + what + " " + name + ": " + std::generic_category().message(code), code);
}

} // namespace quorvel::host
