// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/core_sky.h>
#include <airspace/sky.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace quorvel::run {

/// Whose readings are shown.
enum class Values : std::uint8_t {
    Standard, ///< those of the standards
    Library,  ///< the core library's own
};

/// What the sky of a station is for.
struct SkyUse {
    airspace::SkyOptions options;
    Values values = Values::Standard;
    bool hasPages = false;    ///< report pages, which the core library makes
    bool hasDatabase = false; ///< the core library's database of aircraft
};

/// The aircraft of a station by the standards, or as the core library reads them. The core's tracker runs beside the
/// standards' where something asks for what it alone knows.
class StationSky {
public:
    explicit StationSky(SkyUse const& use);

    airspace::Reply take(airspace::Frame const& frame);

    void setTimeout(airspace::TimeMs timeout);
    void ignoreSpeeds();
    void dropSilent(airspace::TimeMs now);
    void dropAll();

    std::vector<airspace::Aircraft> aircraft(airspace::TimeMs now) const;

    /// The aircraft that a reply was given to; none when it was given to none.
    std::optional<airspace::Aircraft> find(airspace::Reply const& reply, airspace::TimeMs now) const;

    airspace::Counts const& counts() const;

    /// The core's report of an aircraft; an empty pointer where the core does not know it, or does not run.
    std::shared_ptr<modes::ADSBTargetReport> report(airspace::Aircraft const& aircraft) const;

    /// The core's picture; null where it does not run.
    airspace::CoreSky* core() { return _core ? &*_core : nullptr; }

private:
    std::optional<airspace::Sky> _standard; // at least one of them is there
    std::optional<airspace::CoreSky> _core;
};

} // namespace quorvel::run
