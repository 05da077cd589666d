// SPDX-License-Identifier: MIT
#pragma once

#include "host/output.h"
#include "host/position_gate.h"

#include <map>
#include <optional>
#include <string>

namespace quorvel::host {

/// The document `aircraft.json` that web maps read.
///
/// It has one entry for each address. Aircraft not heard for five minutes are left out, and so are position,
/// altitude and velocity older than a minute. The letter of the emitter category is in none of the reports:
/// it is learned from the identification messages themselves.
class AircraftDocument : public Output {
public:
    Wants wants() const override { return Wants::EachFrame; }
    void heard(HeardFrame const& heard) override;

    std::string text(Picture const& picture) const;

protected:
    /// What was learned of aircraft that are gone.
    void forgetAllBut(Picture const& picture);

private:
    std::map<unsigned int, char> _categorySets; // by address, "A" to "D"
};

/// The document as a file, replaced as a whole with each picture, and `receiver.json` beside it.
class AircraftJson : public AircraftDocument {
public:
    /// Writes `receiver.json`. Throws HostError.
    AircraftJson(std::string file, std::optional<Place> const& location);

    void picture(Picture const& picture) override;

private:
    std::string _file;
};

} // namespace quorvel::host
