// SPDX-License-Identifier: MIT
#pragma once

#include "files/host_error.h"

#include <functional>
#include <string>
#include <utility>

namespace quorvel::run {

/// What goes wrong during a run: it is reported at once, and does not stop the rest.
class Failures {
public:
    using Say = std::function<void(std::string const& line)>;

    explicit Failures(Say say) : _say(std::move(say)) {}

    /// Takes a step; false when it threw a HostError.
    template <class Step> bool attempt(Step const& step) {
        try {
            step();
            return true;
        } catch (files::HostError const& failure) {
            take(failure);
            return false;
        }
    }

    /// Several failures for one reason are reported once. That standard output was closed is not reported: its reader
    /// has seen enough.
    void take(files::HostError const& failure);

    std::string const& last() const { return _last; } ///< empty when there was none

private:
    Say _say;
    std::string _last;
};

} // namespace quorvel::run
