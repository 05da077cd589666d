// SPDX-License-Identifier: MIT
#include "host/host_error.h"

#include <cerrno>
#include <system_error>

namespace quorvel::host {

HostError systemError(std::string const& what, std::string const& name) {
    return HostError("cannot " + what + " " + name + ": " + std::generic_category().message(errno));
}

} // namespace quorvel::host
