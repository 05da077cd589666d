// SPDX-License-Identifier: MIT
#pragma once

#include "outputs/output.h"

#include <functional>
#include <string>

namespace quorvel::outputs {

/// The current time of the host.
using HostClock = std::function<airspace::TimeMs()>;

/// All counts and the state of the moment in Prometheus' text format, version 0.0.4. How far a source is behind is
/// given only where its times are of a calendar.
std::string prometheusText(Picture const& picture, airspace::TimeMs hostTime);

/// The same in a file, replaced as a whole with each picture.
class PrometheusFile : public Output {
public:
    PrometheusFile(std::string file, HostClock clock);

    void picture(Picture const& picture) override;

private:
    std::string _file;
    HostClock _clock;
};

} // namespace quorvel::outputs
