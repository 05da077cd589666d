// SPDX-License-Identifier: MIT
#include "inspect/library_values.h"

#include <airspace/squawk.h>
#include <modes/adsb_airborne_position_message.h>
#include <modes/adsb_airborne_velocity_message.h>
#include <modes/adsb_aircraft_status_message.h>
#include <modes/adsb_identity_message.h>
#include <modes/adsb_operational_status_message.h>
#include <modes/adsb_surface_position_message.h>
#include <modes/adsb_target_status_message.h>
#include <modes/modes_message_field.h>

#include <cmath>
#include <optional>

namespace quorvel::inspect {

namespace {

using namespace modes;

std::string squawkText(unsigned code) { return airspace::textOf({static_cast<std::uint16_t>(code)}); }

std::string trimmed(std::string const& callsign) {
    auto const first = callsign.find_first_not_of(' ');
    return first == std::string::npos ? "" : callsign.substr(first, callsign.find_last_not_of(' ') - first + 1);
}

void add(ADSBIdentityMessage const& message, NamedValues& values) {
    values("category", int{message.emitterCategory()});
    values("callsign", trimmed(message.callsign()));
}

void add(ADSBAirbornePositionMessage const& message, NamedValues& values) { values("altitude", message.altitude()); }

void add(ADSBSurfacePositionMessage const& message, NamedValues& values) {
    if (message.movement()) values("groundspeed", message.groundSpeed());
    if (message.headingValid()) values("track", message.heading());
}

void add(ADSBAirborneVelocityMessage const& message, NamedValues& values) {
    using Velocity = ADSBAirborneVelocityMessage;
    values("groundspeed", message.groundSpeed());
    values("track", message.heading());
    values("vertical_rate", message.verticalRate());
    values("vr_source", std::string(message.verticalRateSource() == Velocity::GNSS ? "GNSS" : "BARO"));
    if (auto const* version0 = dynamic_cast<ADSBAirborneVelocityMessageV0 const*>(&message))
        values("nac_v", int{version0->nucr()});
}

void add(ADSBAircraftStatusMessage const& message, NamedValues& values) {
    if (message.subtype() != ADSBAircraftStatusMessage::Subtype::EMERGENCY) return;
    values("emergency_state", static_cast<int>(message.emergencyState()));
    if (auto const* version2 = dynamic_cast<ADSBAircraftStatusMessageV2 const*>(&message))
        values("squawk", squawkText(version2->modeACode()));
}

void add(ADSBTargetStatusMessage const& message, NamedValues& values) {
    values("nac_p", int{message.nacp()});
    values("nic_baro", int{message.nicBaro()});
    values("sil", int{message.sil()});
}

void add(ADSBAircraftOperationalStatusMessage const& message, NamedValues& values) {
    values("version", int{message.versionNumber()});
    values("nic_supplement_a", int{message.nicSupplementA()});
}

template <class... Kinds> void addOfKind(ADSBMessage const& message, NamedValues& values) {
    auto const addIf = [&](auto const* kind) {
        if (kind) add(*kind, values);
    };
    (addIf(dynamic_cast<Kinds const*>(&message)), ...);
}

std::optional<double> numberOf(Value const& value) {
    if (auto const* whole = std::get_if<int>(&value)) return *whole;
    if (auto const* number = std::get_if<double>(&value)) return *number;
    return std::nullopt;
}

} // namespace

void addLibraryValues(ModeSMessage const& reply, NamedValues& values) {
    for (auto const* field : reply.fields()) {
        if (field->designator() == ModeSMessageField::AC)
            values("altitude", static_cast<ModeSMessageFieldAC const*>(field)->altitude());
        if (field->designator() == ModeSMessageField::ID)
            values("squawk", squawkText(static_cast<ModeSMessageFieldID const*>(field)->identity()));
    }
}

void addLibraryValues(ADSBMessage const& message, NamedValues& values) {
    addOfKind<ADSBIdentityMessage, ADSBAirbornePositionMessage, ADSBSurfacePositionMessage, ADSBAirborneVelocityMessage,
        ADSBAircraftStatusMessage, ADSBTargetStatusMessage, ADSBAircraftOperationalStatusMessage>(message, values);
}

bool isOther(Value const& ofLibrary, Value const& ofStandard) {
    constexpr double kRounding = 1e-4; // of steps that the library writes with fewer digits
    auto const number = numberOf(ofLibrary);
    auto const standard = numberOf(ofStandard);
    if (number && standard) return std::abs(*number - *standard) > kRounding;
    return ofLibrary != ofStandard;
}

} // namespace quorvel::inspect
