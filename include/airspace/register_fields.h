// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/comm_b.h>
#include <airspace/resolution_advisory.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <variant>

/// @file
/// The values of registers and advisories by name, as JSON lines and Python dictionaries show them:
/// `visit(name, value)` is called for each value that is there. `name` is a `std::string_view`, `value` a `bool`, an
/// `int`, a `double`, a `std::string_view` that is valid during the call, or `RegisterNumbers`.

namespace quorvel::airspace {

/// Calls `visit` with the value if there is one.
template <class Visit, class Value>
void visitField(Visit&& visit, std::string_view name, std::optional<Value> const& value) {
    if (value) visit(name, *value);
}

/// The same for a degree of hazard, as a number.
template <class Visit> void visitField(Visit&& visit, std::string_view name, std::optional<Hazard> const& value) {
    if (value) visit(name, static_cast<int>(*value));
}

namespace detail {

/// Digits of a number or of bytes; the text lives as long as they.
template <std::size_t Size> class Digits {
public:
    /// Of a number, `bits` each: 4 hexadecimal, 3 octal.
    Digits(std::uint32_t value, unsigned bits) {
        for (std::size_t i = Size; i-- > 0; value >>= bits) _digits[i] = kDigits[value & ((1U << bits) - 1)];
    }

    /// Of bytes, two hexadecimal ones each.
    explicit Digits(std::array<std::uint8_t, Size / 2> const& bytes) {
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            _digits[2 * i] = kDigits[bytes[i] >> 4];
            _digits[2 * i + 1] = kDigits[bytes[i] & 0xF];
        }
    }

    std::string_view text() const { return {_digits.data(), Size}; }

private:
    static constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::array<char, Size> _digits{};
};

} // namespace detail

/// The values of an advisory.
template <class Visit> void visitFields(Visit&& visit, ResolutionAdvisory const& advisory) {
    visit("ara", static_cast<int>(advisory.ara));
    visit("rac", static_cast<int>(advisory.rac));
    visit("ra_terminated", advisory.isTerminated);
    visit("multiple_threat", advisory.hasMultipleThreats);
    visit("issued_ra", advisory.isIssued());
    if (auto const& same = advisory.sameSense) {
        visit("corrective", same->isCorrective);
        visit("downward_sense", same->isDownward);
        visit("increased_rate", same->isIncreasedRate);
        visit("sense_reversal", same->isSenseReversal);
        visit("altitude_crossing", same->crossesAltitude);
        visit("positive", same->isPositive);
    }
    if (auto const& mixed = advisory.mixedSense) {
        visit("up_correction", mixed->correctsUpward);
        visit("positive_climb", mixed->requiresClimb);
        visit("down_correction", mixed->correctsDownward);
        visit("positive_descend", mixed->requiresDescent);
        visit("altitude_crossing", mixed->crossesAltitude);
        visit("sense_reversal", mixed->isSenseReversal);
    }
    visit("no_below", advisory.noBelow);
    visit("no_above", advisory.noAbove);
    visit("no_left", advisory.noLeft);
    visit("no_right", advisory.noRight);
    visit("threat_type_indicator", static_cast<int>(advisory.threatType));
    if (advisory.threatAddress) visit("threat_icao", detail::Digits<6>(*advisory.threatAddress, 4).text());
    visitField(visit, "threat_altitude", advisory.threatAltitudeFt);
    visitField(visit, "threat_range", advisory.threatRangeNm);
    visitField(visit, "threat_bearing", advisory.threatBearingDegrees);
}

/// The values of register 1,0.
template <class Visit> void visitFields(Visit&& visit, DataLinkCapability const& capability) {
    visit("config", capability.hasContinuation);
    visit("overlay_command_capability", capability.hasOverlayCommand);
    visit("acas_operational", capability.isAcasOperational);
    visit("mode_s_subnetwork_version", static_cast<int>(capability.subnetworkVersion));
    visit("transponder_level5", capability.isLevel5);
    visit("mode_s_specific_services", capability.hasSpecificServices);
    visit("uplink_elm_throughput", static_cast<int>(capability.uplinkThroughput));
    visit("downlink_elm_throughput", static_cast<int>(capability.downlinkThroughput));
    visit("aircraft_identification_capability", capability.hasIdentification);
    visit("squitter_capability", capability.hasSquitter);
    visit("surveillance_identifier_code", capability.hasSurveillanceIdentifier);
    visit("common_usage_gicb_capability", capability.hasCommonUsageCapability);
    visit("acas_hybrid_surveillance", capability.hasHybridSurveillance);
    visit("acas_resolution_advisory", capability.hasResolutionAdvisories);
    visit("acas_rtca_version", static_cast<int>(capability.acasVersion));
    visit("dte_status", static_cast<int>(capability.terminals));
}

/// The values of register 1,7.
template <class Visit> void visitFields(Visit&& visit, CommonUsageCapability const& capability) {
    visit("supported_bds", capability.served());
}

/// The values of register 2,0.
template <class Visit> void visitFields(Visit&& visit, AircraftIdentification const& identification) {
    visit("callsign", identification.callsign.text());
}

/// The values of register 2,1.
template <class Visit> void visitFields(Visit&& visit, AircraftRegistration const& registration) {
    if (registration.registration) visit("registration", registration.registration->text());
    if (registration.airline) visit("airline", registration.airline->text());
}

/// The values of register 3,0.
template <class Visit> void visitFields(Visit&& visit, ActiveAdvisory const& active) {
    visitFields(visit, active.advisory);
}

/// The values of register 4,0.
template <class Visit> void visitFields(Visit&& visit, SelectedIntention const& intention) {
    constexpr std::array<std::string_view, 4> sources{"unknown", "aircraft_altitude", "mcp_fcu", "fms"};
    visitField(visit, "selected_altitude_mcp", intention.controlPanelAltitudeFt);
    visitField(visit, "selected_altitude_fms", intention.flightManagementAltitudeFt);
    visitField(visit, "baro_pressure_setting", intention.pressureSettingHpa);
    if (intention.modes) {
        visit("vnav_mode", intention.modes->isVnav);
        visit("altitude_hold_mode", intention.modes->isAltitudeHold);
        visit("approach_mode", intention.modes->isApproach);
    }
    if (auto const source = intention.targetAltitudeSource) {
        visit("target_altitude_source", sources[static_cast<std::size_t>(*source)]);
    }
}

/// The values of register 4,4.
template <class Visit> void visitFields(Visit&& visit, RoutineMeteorology const& weather) {
    visit("figure_of_merit", static_cast<int>(weather.figureOfMerit));
    visitField(visit, "wind_speed", weather.windSpeedKt);
    visitField(visit, "wind_direction", weather.windDirectionDegrees);
    visitField(visit, "static_air_temperature", weather.staticAirTemperatureCelsius);
    visitField(visit, "static_pressure", weather.staticPressureHpa);
    visitField(visit, "turbulence", weather.turbulence);
    visitField(visit, "humidity", weather.humidityPercent);
}

/// The values of register 4,5.
template <class Visit> void visitFields(Visit&& visit, HazardMeteorology const& weather) {
    visitField(visit, "turbulence", weather.turbulence);
    visitField(visit, "wind_shear", weather.windShear);
    visitField(visit, "microburst", weather.microburst);
    visitField(visit, "icing", weather.icing);
    visitField(visit, "wake_vortex", weather.wakeVortex);
    visitField(visit, "static_air_temperature", weather.staticAirTemperatureCelsius);
    visitField(visit, "static_pressure", weather.staticPressureHpa);
    visitField(visit, "radio_height", weather.radioHeightFt);
}

/// The values of register 5,0.
template <class Visit> void visitFields(Visit&& visit, TrackAndTurn const& state) {
    visitField(visit, "roll", state.rollDegrees);
    visitField(visit, "true_track", state.trueTrackDegrees);
    visitField(visit, "groundspeed", state.groundSpeedKt);
    visitField(visit, "track_rate", state.trackRateDegreesPerSecond);
    visitField(visit, "true_airspeed", state.trueAirspeedKt);
}

/// The values of register 5,3.
template <class Visit> void visitFields(Visit&& visit, AirReferencedState const& state) {
    visitField(visit, "magnetic_heading", state.magneticHeadingDegrees);
    visitField(visit, "indicated_airspeed", state.indicatedAirspeedKt);
    visitField(visit, "mach", state.mach);
    visitField(visit, "true_airspeed", state.trueAirspeedKt);
    visitField(visit, "vertical_rate", state.verticalRateFtMin);
}

/// The values of register 6,0.
template <class Visit> void visitFields(Visit&& visit, HeadingAndSpeed const& state) {
    visitField(visit, "magnetic_heading", state.magneticHeadingDegrees);
    visitField(visit, "indicated_airspeed", state.indicatedAirspeedKt);
    visitField(visit, "mach", state.mach);
    visitField(visit, "baro_vertical_rate", state.barometricVerticalRateFtMin);
    visitField(visit, "inertial_vertical_rate", state.inertialVerticalRateFtMin);
}

/// Nothing was read.
template <class Visit> void visitFields(Visit&&, std::monostate) {}

/// The values of whatever register was read.
template <class Visit> void visitFields(Visit&& visit, RegisterContent const& content) {
    std::visit([&visit](auto const& one) { visitFields(visit, one); }, content);
}

/// Which registers the seven bytes of MB fit by themselves, and the values of the one if it is the only one: `bds` and
/// values, or `bds_candidates`, or nothing.
template <class Visit> void visitFittingRegisters(Visit&& visit, std::string_view mb) {
    auto const fitting = fittingRegisters(mb);
    if (auto const only = fitting.only()) {
        visit("bds", nameOf(*only).text());
        visitFields(visit, readRegister(mb, *only));
    } else if (!fitting.isEmpty()) {
        visit("bds_candidates", fitting.numbers());
    }
}

} // namespace quorvel::airspace
