// SPDX-License-Identifier: MIT
#pragma once

#include "outputs/prometheus.h"
#include "run/sinks.h"
#include "run/track_run.h"

#include <memory>
#include <string>

namespace quorvel::host {

/// All counts of a run in Prometheus' text format, for whoever asks on a port.
class PrometheusPort : public Output {
public:
    /// Throws HostError when the port cannot be had.
    PrometheusPort(std::string const& target, TrackRun& run, HostClock const& clock)
        : _server(TextServer::make(
              target, "text/plain; version=0.0.4; charset=utf-8",
              [&run, clock] { return prometheusText(run.picture(), clock()); }, run.network())) {}

    bool wantsPicture() override { return false; }
    void finish(Picture const&) override {}

private:
    std::unique_ptr<TextServer> _server;
};

} // namespace quorvel::host
