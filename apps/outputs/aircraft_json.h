// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/place.h>

#include "outputs/output.h"

#include <optional>
#include <string>

namespace quorvel::outputs {

/// The document `aircraft.json` that web maps read.
///
/// It has one entry for each address. Aircraft not heard for five minutes are left out, and so are position,
/// altitude and velocity older than a minute.
std::string aircraftDocument(Picture const& picture);

/// The document as a file, replaced as a whole with each picture, and `receiver.json` beside it.
class AircraftJson : public Output {
public:
    /// Writes `receiver.json`. Throws HostError.
    AircraftJson(std::string file, std::optional<airspace::Place> const& location);

    void picture(Picture const& picture) override;

private:
    std::string _file;
};

} // namespace quorvel::outputs
