// SPDX-License-Identifier: MIT
#pragma once

#include "net/sinks.h"
#include "outputs/prometheus.h"
#include "run/track_run.h"

#include <memory>
#include <string>

namespace quorvel::run {

/// All counts of a run in Prometheus' text format, for each request on a port.
class PrometheusPort : public outputs::Output {
public:
    /// Throws HostError when the port is not available.
    PrometheusPort(std::string const& target, TrackRun& run, outputs::HostClock const& clock)
        : _server(net::TextServer::make(
              target, "text/plain; version=0.0.4; charset=utf-8",
              [&run, clock] { return outputs::prometheusText(run.picture(), clock()); }, run.network())) {}

    bool wantsPicture() override { return false; }
    void finish(outputs::Picture const&) override {}

private:
    std::unique_ptr<net::TextServer> _server;
};

} // namespace quorvel::run
