// SPDX-License-Identifier: MIT
#pragma once

#include "outputs/aircraft_json.h"
#include "run/sinks.h"
#include "run/track_run.h"

#include <memory>
#include <string>

namespace quorvel::host {

/// The document of web maps, made anew for whoever asks on a port.
class AircraftJsonPort : public AircraftDocument {
public:
    /// Throws HostError when the port cannot be had.
    AircraftJsonPort(std::string const& target, TrackRun& run)
        : _server(TextServer::make(
              target, "application/json", [this, &run] { return text(run.picture()); }, run.network())) {}

    void picture(Picture const& picture) override { forgetAllBut(picture); }

private:
    std::unique_ptr<TextServer> _server;
};

} // namespace quorvel::host
