// SPDX-License-Identifier: MIT
#include "run/failures.h"

#include <cerrno>

namespace quorvel::run {

void Failures::take(files::HostError const& failure) {
    if (_last != failure.what() && failure.code() != EPIPE) _say(failure.what());
    _last = failure.what();
}

} // namespace quorvel::run
