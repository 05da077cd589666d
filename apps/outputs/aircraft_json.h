// SPDX-License-Identifier: MIT
#pragma once

#include "host/output.h"
#include "host/position_gate.h"

#include <map>
#include <optional>
#include <string>

namespace quorvel::host {

/// The file `aircraft.json` that web maps read, replaced as a whole with each picture, and `receiver.json`
/// beside it.
///
/// It has one entry for each address. Aircraft not heard for five minutes are left out, and so are position,
/// altitude and velocity older than a minute. The letter of the emitter category is in none of the reports:
/// it is learned from the identification messages themselves.
class AircraftJson : public Output {
public:
    /// Writes `receiver.json`. Throws HostError.
    AircraftJson(std::string file, std::optional<Place> const& location);

    Wants wants() const override { return Wants::EachFrame; }
    void heard(HeardFrame const& heard) override;
    void picture(Picture const& picture) override;

    /// The file's content.
    std::string text(Picture const& picture) const;

private:
    void forgetAllBut(std::vector<Aircraft const*> const& aircraft);

    std::string _file;
    std::map<unsigned int, char> _categorySets; // by address, "A" to "D"
};

} // namespace quorvel::host
