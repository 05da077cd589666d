// SPDX-License-Identifier: MIT
#pragma once

#include "net/sinks.h"
#include "outputs/aircraft_json.h"
#include "run/track_run.h"

#include <memory>
#include <string>

namespace quorvel::run {

/// The document of web maps, made for each request on a port.
class AircraftJsonPort : public outputs::Output {
public:
    /// Throws HostError when the port is not available.
    AircraftJsonPort(std::string const& target, TrackRun& run)
        : _server(net::TextServer::make(
              target, "application/json", [&run] { return outputs::aircraftDocument(run.picture()); }, run.network())) {
    }

    bool wantsPicture() override { return false; }
    void finish(outputs::Picture const&) override {}

private:
    std::unique_ptr<net::TextServer> _server;
};

} // namespace quorvel::run
