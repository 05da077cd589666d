// SPDX-License-Identifier: MIT
#pragma once

#include "simulate/flight.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace quorvel::simulate {

std::string_view nameOf(AddressKind kind); ///< "icao", "non-icao", "track-file" or "tis-b"

/// Six hexadecimal digits, a "~" in front of an address that is none of ICAO.
std::string addressText(Profile const& profile);
std::string hexText(std::uint32_t address); ///< without it

/// Four octal digits.
std::string squawkText(std::uint32_t squawk);

/// The name of a register by its number: "4,0".
std::string registerText(unsigned number);

/// All that is true of an aircraft at one moment, whether it tells it or not: `visit(name, value)` is called for each
/// value, a `bool`, `int`, `double` or `std::string_view`. The names are those of the fields of messages, where those
/// have it; the units are those of `FlightState` and `Profile`.
template <class Visit> void visitTruth(Visit&& visit, Aircraft const& aircraft, FlightState const& state) {
    auto const& profile = aircraft.profile();
    auto const& capabilities = profile.capabilities;
    auto const number = [&](std::string_view name, unsigned value) { visit(name, static_cast<int>(value)); };
    auto const text = [&](std::string_view name, std::string const& value) { visit(name, std::string_view(value)); };
    bool const hasAdsb = profile.equipment != Equipment::None;

    text("icao", addressText(profile));
    visit("address_kind", nameOf(profile.addressKind));
    text("callsign", profile.callsign);
    if (!profile.registration.empty()) text("registration", profile.registration);
    text("squawk", squawkText(profile.squawk));
    text("emitter_category", std::string{profile.categorySet} + std::to_string(profile.category));
    if (hasAdsb) number("version", aircraft.version());
    visit("on_ground", profile.onGround);

    visit("latitude", state.place.latitude);
    visit("longitude", state.place.longitude);
    visit("altitude", state.altitude);
    visit("gnss_height", state.gnssHeight);
    visit("geo_minus_baro", state.gnssHeight - state.altitude);
    visit("groundspeed", state.groundSpeed);
    visit("track", state.track);
    visit("track_rate", state.trackRate);
    visit("roll", state.roll);
    visit("true_heading", state.trueHeading);
    visit("magnetic_heading", state.magneticHeading);
    visit("baro_vertical_rate", state.verticalRate);
    visit("inertial_vertical_rate", state.gnssVerticalRate);
    visit("true_airspeed", state.trueAirspeed);
    if (state.mach < 1.0) visit("indicated_airspeed", state.indicatedAirspeed);
    visit("mach", state.mach);

    visit("wind_speed", state.windSpeed);
    visit("wind_direction", state.windDirection);
    visit("static_air_temperature", state.temperature);
    visit("static_pressure", state.pressure);
    number("turbulence", profile.weather.turbulence);
    visit("humidity", profile.weather.humidity);
    visit("qnh", profile.weather.pressureSetting);

    number("emergency_state", profile.emergency);
    visit("ident_active", state.isIdent);
    visit("tcas_operational", capabilities.hasAcas);
    visit("ra_active", state.advisory == AdvisoryPhase::Active);
    if (state.advisory != AdvisoryPhase::None) {
        auto const& advisory = *profile.advisory;
        number("ara", advisory.active);
        number("rac", advisory.complement);
        visit("ra_terminated", state.advisory == AdvisoryPhase::Terminated);
        visit("multiple_threat", advisory.hasMultipleThreats);
        if (advisory.threat != 0) {
            text("threat_icao", hexText(advisory.threat));
        } else {
            visit("threat_altitude", advisory.altitude);
            visit("threat_range", advisory.range);
            visit("threat_bearing", advisory.bearing);
        }
    }
    if (auto const& selection = profile.selection) {
        visit("selected_altitude", selection->altitude);
        visit("selected_heading", selection->heading);
        visit("baro_pressure_setting", state.pressureSetting);
        visit("autopilot", selection->isAutopilot);
        visit("vnav_mode", selection->isVnav);
        visit("altitude_hold_mode", selection->isAltitudeHold);
        visit("approach_mode", selection->isApproach);
        visit("lnav_mode", selection->isLnav);
    }

    auto const& accuracies = profile.accuracies;
    if (!hasAdsb) return;
    number(profile.equipment == Equipment::Version0 ? "nuc_p" : "nic", profile.quality.category);
    if (profile.quality.radius > 0.0) visit("rc", profile.quality.radius);
    number(profile.equipment == Equipment::Version0 ? "nuc_r" : "nac_v", accuracies.velocity);
    if (profile.equipment == Equipment::Version0) return;
    number("nac_p", accuracies.position);
    number("sil", accuracies.sourceIntegrity);
    visit("nic_baro", accuracies.isBarometerChecked);
    if (profile.equipment == Equipment::Version1) return;
    visit("sil_supplement", accuracies.isIntegrityBySample);
    number("sda", accuracies.designAssurance);
    number("gva", accuracies.vertical);
    visit("single_antenna", capabilities.hasSingleAntenna);
}

} // namespace quorvel::simulate
