// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/integrity.h>
#include <airspace/message.h>
#include <airspace/register_fields.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <type_traits>
#include <variant>

namespace quorvel::airspace {

namespace detail {

/// Calls `visit(name, value)` for the fields of messages: the one place where they have names.
template <class Visit> class MessageFields {
public:
    explicit MessageFields(Visit& visit) : _visit(visit) {}

    void operator()(std::monostate) {}

    void operator()(ShortAirAirReply const& reply) {
        addressed(reply);
        text("vertical_status", reply.isOnGround ? "on-ground" : "airborne");
        number("cross_link_capability", reply.hasCrossLink);
        number("sensitivity_level", reply.sensitivity);
        number("reply_information", reply.reply);
        number("altitude", reply.altitude.altitudeFt);
    }

    void operator()(AltitudeReply const& reply) {
        surveillance(reply);
        number("altitude", reply.altitude.altitudeFt);
    }

    void operator()(IdentityReply const& reply) {
        surveillance(reply);
        squawk(reply.squawk);
    }

    void operator()(AllCallReply const& reply) {
        addressed(reply);
        number("capability", reply.capability.code);
        flag("crc_ok", reply.isIntact);
        number("ii", reply.ii);
        number("si", reply.si);
    }

    void operator()(LongAirAirReply const& reply) {
        addressed(reply);
        text("vertical_status", reply.isOnGround ? "on-ground" : "airborne");
        number("sensitivity_level", reply.sensitivity);
        number("reply_information", reply.reply);
        number("altitude", reply.altitude.altitudeFt);
        text("mv", Digits<14>(reply.mv).text());
        if (reply.advisory) visitFields(_visit, *reply.advisory);
    }

    void operator()(ExtendedSquitter const& squitter) {
        addressed(squitter);
        if (squitter.capability) number("capability", squitter.capability->code);
        number("cf", squitter.controlField);
        flag("crc_ok", squitter.isIntact());
        if (squitter.typeCode) {
            number("typecode", squitter.typeCode);
            if (auto const number = registerOfTypeCode(*squitter.typeCode)) registerNumber(*number);
        }
        number("subtype", squitter.subtype);
        std::visit([this](auto const& content) { this->fields(content); }, squitter.content);
        if (squitter.typeCode && squitter.origin != SquitterOrigin::TisB) uncertainty(squitter);
    }

    void operator()(MilitarySquitter const& reply) { header(reply); }

    void operator()(CommBAltitudeReply const& reply) {
        surveillance(reply);
        number("altitude", reply.altitude.altitudeFt);
        fittingRegisters(reply.mb);
    }

    void operator()(CommBIdentityReply const& reply) {
        surveillance(reply);
        squawk(reply.squawk);
        fittingRegisters(reply.mb);
    }

    void operator()(ExtendedLengthReply const& reply) {
        header(reply);
        number("ke", reply.isAcknowledgement);
        number("nd", reply.segment);
    }

    void operator()(OtherReply const& reply) { header(reply); }

private:
    void flag(std::string_view name, std::optional<bool> value) {
        if (value) _visit(name, *value);
    }

    template <class Value> void number(std::string_view name, Value value) {
        if constexpr (std::is_floating_point_v<Value>) {
            _visit(name, value);
        } else {
            _visit(name, static_cast<int>(value));
        }
    }

    template <class Value> void number(std::string_view name, std::optional<Value> const& value) {
        if (value) number(name, *value);
    }

    void text(std::string_view name, std::string_view value) { _visit(name, value); }

    void squawk(Squawk code) { text("squawk", Digits<4>(code.code, 3).text()); }

    void registerNumber(std::uint8_t number) {
        std::array<char, 3> const digits{
            static_cast<char>('0' + (number >> 4)), ',', static_cast<char>('0' + (number & 0xF))};
        text("bds", {digits.data(), digits.size()});
    }

    void header(MessageHeader const& header) {
        number("df", header.format);
        number("remainder", header.remainder);
    }

    void addressed(MessageHeader const& message) {
        header(message);
        text("icao", Digits<6>(message.address, 4).text());
    }

    void surveillance(SurveillanceHeader const& reply) {
        addressed(reply);
        number("flight_status", reply.flightStatus.code);
        number("downlink_request", reply.downlinkRequest);
        number("utility_message", reply.utility);
    }

    void fittingRegisters(std::array<std::uint8_t, 7> const& mb) {
        visitFittingRegisters(_visit, {reinterpret_cast<char const*>(mb.data()), mb.size()});
    }

    void uncertainty(ExtendedSquitter const& squitter) {
        if (registerOfTypeCode(*squitter.typeCode)) number("nuc_p", navigationUncertainty(*squitter.typeCode));
    }

    void position(CompactPosition const& position) {
        number("cpr_format", position.isOdd);
        number("cpr_lat", position.latitude);
        number("cpr_lon", position.longitude);
    }

    void altitude(AltitudeCode const& code, AltitudeType type) {
        if (!code.altitudeFt) return;
        number("altitude", code.altitudeFt);
        text("altitude_type", type == AltitudeType::Gnss ? "gnss" : "baro");
    }

    void speed(std::optional<SpeedRange> const& range) {
        if (!range) return;
        number("groundspeed", range->lowerKt);
        number("groundspeed_upper", range->upperKt);
    }

    void horizontal(HorizontalVelocity const& velocity) {
        number("velocity_ew", velocity.eastKt);
        number("velocity_ns", velocity.northKt);
        number("groundspeed", velocity.groundSpeedKt());
        number("track", velocity.trackDegrees());
        number("heading", velocity.headingDegrees);
        if (velocity.airspeedType) text("airspeed_type", *velocity.airspeedType == AirspeedType::True ? "TAS" : "IAS");
        number("airspeed", velocity.airspeedKt);
    }

    void fields(UnreadSquitter const&) {}

    void fields(GroundStationManagement const&) {}

    void fields(NoPosition const& content) {
        number("surveillance_status", content.surveillanceStatus);
        altitude(content.altitude, AltitudeType::Barometric);
    }

    void fields(AirbornePosition const& content) {
        number("surveillance_status", content.surveillanceStatus);
        number("nic_b", content.nicSupplementB);
        altitude(content.altitude, content.altitudeType);
        number("time_sync", content.isTimeSynchronized);
        position(content.position);
    }

    void fields(SurfacePosition const& content) {
        number("movement", content.movement);
        speed(content.speed);
        number("track_status", content.trackDegrees.has_value());
        number("track", content.trackDegrees);
        number("time_sync", content.isTimeSynchronized);
        position(content.position);
    }

    void fields(Identification const& content) {
        std::array<char, 2> const category{content.category.set, static_cast<char>('0' + content.category.number)};
        number("category", content.category.number);
        text("emitter_category", {category.data(), category.size()});
        text("callsign", content.callsign.text());
    }

    void fields(AirborneVelocity const& content) {
        number("intent_change", content.isIntentChanging);
        number("ifr_capability", content.isIfrCapable);
        number("nac_v", content.nacV);
        horizontal(content.horizontal);
        if (content.verticalRateFtMin) {
            number("vertical_rate", content.verticalRateFtMin);
            text("vr_source", content.verticalRateSource == VerticalRateSource::Gnss ? "GNSS" : "BARO");
        }
        number("geo_minus_baro", content.gnssMinusBarometricFt);
    }

    void fields(TisBVelocity const& content) {
        horizontal(content.horizontal);
        number("vertical_rate", content.verticalRateFtMin);
        number("nac_p", content.nacP);
        number("nac_v", content.nacV);
        number("sil", content.sil);
        number("geo_minus_baro", content.gnssMinusBarometricFt);
    }

    void fields(EmergencyStatus const& content) {
        number("emergency_state", content.emergency);
        squawk(content.squawk);
    }

    void fields(AdvisoryBroadcast const& content) { visitFields(_visit, content.advisory); }

    void fields(TestMessage const& content) { squawk(content.squawk); }

    void fields(CoarsePosition const& content) {
        number("surveillance_status", content.surveillanceStatus);
        altitude(content.altitude, AltitudeType::Barometric);
        speed(content.groundSpeed);
        number("track", content.trackDegrees);
    }

    void fields(TargetState const& content) {
        number("sil_supplement", content.silSupplement);
        if (content.selectedAltitudeFt) {
            number("selected_altitude", content.selectedAltitudeFt);
            text("selected_altitude_source",
                content.altitudeSource == SelectedAltitudeSource::FlightManagement ? "FMS" : "MCP/FCU");
        }
        number("baro_pressure_setting", content.pressureSettingHpa);
        number("selected_heading", content.selectedHeadingDegrees);
        quality(content);
        if (content.modes) {
            flag("autopilot", content.modes->isEngaged);
            flag("vnav_mode", content.modes->isVnav);
            flag("altitude_hold_mode", content.modes->isAltitudeHold);
            flag("approach_mode", content.modes->isApproach);
            flag("lnav_mode", content.modes->isLnav);
        }
        flag("tcas_operational", content.isTcasOperational);
    }

    void fields(TargetStateVersion1 const& content) {
        number("vertical_data_source", content.verticalDataSource);
        number("target_altitude_type", content.isMeanSeaLevel);
        number("target_altitude_capability", content.targetAltitudeCapability);
        number("vertical_mode", content.verticalMode);
        number("target_altitude", content.targetAltitudeFt);
        number("horizontal_data_source", content.horizontalDataSource);
        if (content.targetDirectionDegrees) {
            number("target_direction", content.targetDirectionDegrees);
            flag("target_direction_is_track", content.isDirectionTrack);
        }
        number("horizontal_mode", content.horizontalMode);
        quality(content);
        number("capability_mode", content.capabilityMode);
        number("emergency_state", content.emergency);
    }

    template <class Content> void quality(Content const& content) {
        number("nac_p", content.nacP);
        number("nic_baro", content.isNicBaroChecked);
        number("sil", content.sil);
    }

    void fields(OperationalStatus const& content) {
        number("version", content.version);
        number("operational_mode", content.operationalMode);
        number("capability_class", content.capabilityClass);
        capability(content);
        number("ra_active", content.isAdvisoryActive);
        number("ident_active", content.isIdentActive);
        number("single_antenna", content.hasSingleAntenna);
        number("sda", content.sda);
        number("gps_offset", content.antennaOffset);
        number("nic_supplement_a", content.nicSupplementA);
        number("nac_p", content.nacP);
        number("baq", content.barometricQuality);
        number("gva", content.gva);
        number("sil", content.sil);
        number("nic_baro", content.isNicBaroChecked);
        number("track_is_heading", content.isTrackHeading);
        number("hrd", content.isMagneticNorth);
        number("sil_supplement", content.silSupplement);
    }

    void capability(OperationalStatus const& content) {
        flag("tcas_operational", content.isTcasOperational);
        number("cdti", content.hasTrafficDisplay);
        number("es_in", content.receivesExtendedSquitter);
        number("uat_in", content.receivesUat);
        number("arv", content.reportsAirVelocity);
        number("ts", content.reportsTargetState);
        number("tc", content.targetChange);
        number("position_offset_applied", content.isPositionOffsetApplied);
        number("b2_low", content.isLowPower);
        number("nac_v", content.nacV);
        number("nic_c", content.nicSupplementC);
        number("length_width", content.lengthWidth);
    }

    Visit& _visit;
};

} // namespace detail

/// The values of a message by name, those of a Comm-B reply's register included where the bits fit one alone.
/// `visit(name, value)` is called as for registers. What a message does not hold is left out.
template <class Visit> void visitFields(Visit&& visit, Message const& message) {
    std::visit(detail::MessageFields<std::remove_reference_t<Visit>>(visit), message);
}

} // namespace quorvel::airspace
