// SPDX-License-Identifier: MIT
// What simulated aircraft send is read by the standards, and must be what is true of them, within the steps of the
// fields.
#include "simulate/flight_truth.h"
#include "simulate/signal_codes.h"
#include "simulate/traffic.h"

#include <airspace/airspace.h>
#include <airspace/integrity.h>
#include <airspace/message.h>

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <string>

namespace airspace = quorvel::airspace;
namespace simulate = quorvel::simulate;
using simulate::Equipment;
using simulate::GroundStation;

namespace {

constexpr double kMetresPerNm = 1852.0;

// How often each kind of message was seen, by a name of it.
using Kinds = std::map<std::string, int>;

// Compares one frame with the truth.
class Comparison {
public:
    Comparison(simulate::Aircraft const& aircraft, simulate::Frame const& frame, Kinds& kinds)
        : _aircraft(aircraft)
        , _profile(aircraft.profile())
        , _state(aircraft.at(static_cast<double>(frame.nanoseconds) / 1e9))
        , _frame(frame)
        , _kinds(kinds) {}

    void operator()(std::monostate) { ADD_FAILURE() << "no frame"; }
    void operator()(airspace::MilitarySquitter const&) { ADD_FAILURE(); }
    void operator()(airspace::ExtendedLengthReply const&) { ADD_FAILURE(); }
    void operator()(airspace::OtherReply const&) { ADD_FAILURE(); }

    void operator()(airspace::ShortAirAirReply const& reply) {
        seen("df0");
        addressed(reply);
        EXPECT_EQ(reply.isOnGround, _profile.onGround);
        EXPECT_EQ(reply.sensitivity, _profile.capabilities.sensitivity);
        EXPECT_EQ(reply.reply, _profile.capabilities.replyInformation);
        altitude(reply.altitude);
    }

    void operator()(airspace::LongAirAirReply const& reply) {
        seen("df16");
        addressed(reply);
        altitude(reply.altitude);
        ASSERT_TRUE(reply.advisory);
        advised("df16", *reply.advisory, false);
    }

    void operator()(airspace::AltitudeReply const& reply) {
        seen("df4");
        surveyed(reply);
        altitude(reply.altitude);
    }

    void operator()(airspace::IdentityReply const& reply) {
        seen("df5");
        surveyed(reply);
        EXPECT_EQ(reply.squawk.code, _profile.squawk);
    }

    void operator()(airspace::CommBAltitudeReply const& reply) {
        seen("df20");
        surveyed(reply);
        altitude(reply.altitude);
        registered(reply.mb);
    }

    void operator()(airspace::CommBIdentityReply const& reply) {
        seen("df21");
        surveyed(reply);
        EXPECT_EQ(reply.squawk.code, _profile.squawk);
        registered(reply.mb);
    }

    void operator()(airspace::AllCallReply const& reply) {
        addressed(reply);
        EXPECT_TRUE(reply.isIntact);
        onGroundOrOpen(reply.capability.isOnGround());
        seen(reply.si ? "df11 si" : *reply.ii == 0 ? "df11 squitter" : "df11 ii");
    }

    void operator()(airspace::ExtendedSquitter const& squitter) {
        EXPECT_TRUE(squitter.isIntact());
        if (squitter.capability) onGroundOrOpen(squitter.capability->isOnGround());
        _source = squitter.controlField ? "cf" + std::to_string(*squitter.controlField) : "df17";
        _typeCode = squitter.typeCode.value_or(0);
        _subtype = squitter.subtype.value_or(0);
        addressed(squitter);
        std::visit([this](auto const& content) { this->content(content); }, squitter.content);
    }

private:
    void seen(std::string const& kind) { ++_kinds[kind]; }
    void told(std::string const& kind) { seen(_source + " " + kind); }

    void addressed(airspace::MessageHeader const& header) {
        EXPECT_EQ(header.address, _profile.address);
        constexpr airspace::AddressKind kKinds[] = {airspace::AddressKind::Icao, airspace::AddressKind::NonIcao,
            airspace::AddressKind::TrackFile, airspace::AddressKind::TisB};
        auto const kind = kKinds[static_cast<std::size_t>(_profile.addressKind)];
        bool const hasFlag = _typeCode < 1 || _typeCode > 4; // identifications have no place for it
        bool const isFlagged = kind == airspace::AddressKind::NonIcao || kind == airspace::AddressKind::TrackFile;
        bool const isGroundStations = _source == "cf2" || _source == "cf6";
        bool const isOpen = isFlagged && isGroundStations && !hasFlag;
        EXPECT_EQ(header.addressKind, isOpen ? airspace::AddressKind::Icao : kind);
    }

    void onGroundOrOpen(std::optional<bool> isOnGround) {
        EXPECT_EQ(isOnGround.value_or(_profile.onGround), _profile.onGround);
    }

    void surveyed(airspace::SurveillanceHeader const& reply) {
        addressed(reply);
        onGroundOrOpen(reply.flightStatus.isOnGround());
        EXPECT_EQ(reply.flightStatus.hasIdent(), _state.isIdent);
        EXPECT_EQ(reply.flightStatus.hasAlert(), _profile.emergency != 0);
        if (reply.flightStatus.hasIdent()) seen("ident");
        if (reply.flightStatus.hasAlert()) seen("alert");
    }

    void altitude(airspace::AltitudeCode const& code) { altitude(code, _state.altitude); }

    void altitude(airspace::AltitudeCode const& code, double feet) {
        ASSERT_TRUE(code.altitudeFt);
        bool const inHundreds = code.coding == airspace::AltitudeCoding::Steps100Ft;
        EXPECT_EQ(inHundreds, _profile.capabilities.hasHundredFootSteps || feet > 50'175);
        EXPECT_NEAR(*code.altitudeFt, feet, inHundreds ? 50.001 : 12.501);
        EXPECT_EQ(*code.altitudeFt, simulate::codedAltitude(feet, _profile.capabilities.hasHundredFootSteps));
        seen(inHundreds ? "100 ft" : "25 ft");
    }

    static void angle(std::optional<double> told, double truth, double step) {
        ASSERT_TRUE(told);
        EXPECT_TRUE(*told >= 0.0 && *told < 360.0);
        EXPECT_LE(std::fabs(std::remainder(*told - truth, 360.0)), step / 2 + 1e-6) << *told << " " << truth;
    }

    template <class Value> static void value(std::optional<Value> const& told, double truth, double step) {
        ASSERT_TRUE(told);
        EXPECT_LE(std::fabs(static_cast<double>(*told) - truth), step / 2 + 1e-6) << *told << " " << truth;
    }

    void advised(std::string const& kind, airspace::ResolutionAdvisory const& told, bool hasThreat) {
        bool const isThere = _state.advisory != simulate::AdvisoryPhase::None;
        EXPECT_EQ(told.isIssued(), isThere);
        if (!isThere) return;
        auto const& truth = *_profile.advisory;
        EXPECT_EQ(told.ara, truth.active);
        EXPECT_EQ(told.rac, truth.complement);
        EXPECT_EQ(told.isTerminated, _state.advisory == simulate::AdvisoryPhase::Terminated);
        EXPECT_EQ(told.hasMultipleThreats, truth.hasMultipleThreats);
        seen(kind + (told.isTerminated ? " terminated" : " advisory"));
        if (!hasThreat) return;
        EXPECT_EQ(told.threatAddress.value_or(0), truth.threat);
        if (truth.threat != 0) return;
        value(told.threatAltitudeFt, truth.altitude, 100);
        value(told.threatRangeNm, truth.range, 0.1);
        value(told.threatBearingDegrees, truth.bearing, 6);
    }

    template <class Unexpected> void content(Unexpected const&) {
        ADD_FAILURE() << _source << " type code " << _typeCode << " subtype " << _subtype;
    }

    // Version 0 has no test messages and no advisories; what it has is read without a version, too.
    void content(airspace::NoPosition const& told) {
        this->told("no position");
        altitude(told.altitude);
    }

    void content(airspace::AirbornePosition const& told) {
        bool const isGnss = told.altitudeType == airspace::AltitudeType::Gnss;
        this->told(isGnss ? "gnss position" : "position");
        altitude(told.altitude, isGnss ? _state.gnssHeight : _state.altitude);
        EXPECT_EQ(told.surveillanceStatus == airspace::SurveillanceStatus::PermanentAlert, _profile.emergency != 0);
        bool const isOlder = version() < 2 && _source == "df17";
        EXPECT_TRUE(!isOlder || told.nicSupplementB == _profile.capabilities.hasSingleAntenna);
        placed(told.position, 6.0);
        qualified({_profile.quality.supplementA, _profile.quality.supplementB, false});
    }

    void content(airspace::SurfacePosition const& told) {
        this->told("surface position");
        placed(told.position, 1.5);
        auto const& capabilities = _profile.capabilities; // the status tells which direction it is
        bool const isHeading = _aircraft.version() > 0 && capabilities.isHeadingOnSurface;
        auto const heading = capabilities.isMagneticNorth ? _state.magneticHeading : _state.trueHeading;
        angle(told.trackDegrees, isHeading ? heading : _state.track, 360.0 / 128);
        auto const speed = airspace::speedOfMovement(told.movement, static_cast<std::uint8_t>(version()));
        ASSERT_TRUE(speed);
        EXPECT_GE(_state.groundSpeed, speed->lowerKt - 1e-9);
        EXPECT_LE(_state.groundSpeed, speed->upperKt.value_or(1000.0) + 1e-9);
        qualified({_profile.quality.supplementA, false, _profile.quality.supplementC});
    }

    void placed(airspace::CompactPosition const& position, double metres) {
        auto const& truth = _state.place;
        auto const told = airspace::localPosition(position, {truth.latitude, truth.longitude});
        ASSERT_TRUE(told);
        EXPECT_LT(airspace::distanceNm(*told, {truth.latitude, truth.longitude}) * kMetresPerNm, metres);
    }

    void qualified(airspace::NicSupplements const& supplements) {
        auto const integrity =
            airspace::navigationIntegrity(_typeCode, static_cast<std::uint8_t>(version()), supplements);
        EXPECT_NEAR(integrity.radiusMetres.value_or(0), _profile.quality.radius, 0.01) << _typeCode;
        if (_profile.equipment == Equipment::Version0) {
            EXPECT_EQ(airspace::navigationUncertainty(_typeCode), _profile.quality.category);
        } else {
            EXPECT_EQ(integrity.nic, _profile.quality.category);
        }
    }

    void content(airspace::Identification const& told) {
        this->told("identification");
        EXPECT_EQ(told.callsign.text(), _profile.callsign);
        EXPECT_EQ(told.category.set, _profile.categorySet);
        EXPECT_EQ(told.category.number, _profile.category);
    }

    void moved(airspace::HorizontalVelocity const& told) {
        bool const isFast = _subtype % 2 == 0;
        double const step = isFast ? 4.0 : 1.0;
        if (_subtype <= 2) {
            value(told.eastKt, _state.groundSpeed * std::sin(_state.track * simulate::kRadians), step);
            value(told.northKt, _state.groundSpeed * std::cos(_state.track * simulate::kRadians), step);
            EXPECT_EQ(isFast, _state.groundSpeed > 1000);
            return;
        }
        bool const isTrue = told.airspeedType == airspace::AirspeedType::True;
        value(told.airspeedKt, isTrue ? _state.trueAirspeed : _state.indicatedAirspeed, step);
        bool const isMagnetic = _profile.capabilities.isMagneticNorth;
        angle(told.headingDegrees, isMagnetic ? _state.magneticHeading : _state.trueHeading, 360.0 / 1024);
    }

    void content(airspace::AirborneVelocity const& told) {
        this->told("velocity " + std::to_string(_subtype));
        moved(told.horizontal);
        EXPECT_EQ(told.nacV, _profile.accuracies.velocity);
        bool const isGnss = told.verticalRateSource == airspace::VerticalRateSource::Gnss;
        value(told.verticalRateFtMin, isGnss ? _state.gnssVerticalRate : _state.verticalRate, 64);
        EXPECT_EQ(
            told.gnssMinusBarometricFt || told.isDifferenceBeyondScale, _profile.capabilities.tellsHeightDifference);
        if (told.gnssMinusBarometricFt) value(told.gnssMinusBarometricFt, _state.gnssHeight - _state.altitude, 25);
        EXPECT_TRUE(!told.isDifferenceBeyondScale || std::fabs(_state.gnssHeight - _state.altitude) > 3137.5);
    }

    void content(airspace::TisBVelocity const& told) {
        this->told("velocity " + std::to_string(_subtype));
        moved(told.horizontal);
        EXPECT_EQ(told.nacP, _profile.accuracies.position);
        value(told.verticalRateFtMin, _state.verticalRate, 64);
        if (told.nacV) {
            EXPECT_EQ(*told.nacV, _profile.accuracies.velocity);
            EXPECT_EQ(*told.sil, _profile.accuracies.sourceIntegrity);
        } else {
            value(told.gnssMinusBarometricFt, _state.gnssHeight - _state.altitude, 25);
        }
    }

    void content(airspace::EmergencyStatus const& told) {
        this->told("emergency status");
        EXPECT_EQ(static_cast<unsigned>(told.emergency), _profile.emergency);
        EXPECT_EQ(told.squawk.code, _profile.squawk);
    }

    void content(airspace::AdvisoryBroadcast const& told) { advised(_source, told.advisory, true); }

    void content(airspace::TestMessage const& told) {
        this->told("test message");
        EXPECT_EQ(told.squawk.code, _profile.squawk);
    }

    void content(airspace::CoarsePosition const& told) {
        this->told("coarse position");
        altitude(told.altitude);
        angle(told.trackDegrees, _state.track, 360.0 / 32);
        ASSERT_TRUE(told.groundSpeed);
        EXPECT_GE(_state.groundSpeed, told.groundSpeed->lowerKt - 1e-9);
        EXPECT_LE(_state.groundSpeed, told.groundSpeed->upperKt.value_or(2000.0));
        // 12 bits are the upper ones of 17, rounded.
        auto const upper = [](std::uint16_t bits) { return static_cast<std::uint32_t>(bits) << 5; };
        airspace::CompactPosition const position{upper(told.latitude), upper(told.longitude), told.isOdd, false};
        placed(position, 250.0);
    }

    void content(airspace::TargetState const& told) {
        this->told("target state");
        quality(told);
        EXPECT_EQ(told.silSupplement, _profile.accuracies.isIntegrityBySample);
        EXPECT_EQ(told.isTcasOperational, _profile.capabilities.hasAcas);
        EXPECT_EQ(told.selectedAltitudeFt.has_value(), _profile.selection.has_value());
        EXPECT_EQ(told.modes.has_value(), _profile.selection.has_value());
        if (!_profile.selection) return;
        auto const& truth = *_profile.selection;
        value(told.selectedAltitudeFt, truth.altitude, 32);
        EXPECT_EQ(told.altitudeSource == airspace::SelectedAltitudeSource::FlightManagement, truth.isFlightManagement);
        value(told.pressureSettingHpa, _state.pressureSetting, 0.8);
        angle(told.selectedHeadingDegrees, truth.heading, 180.0 / 256);
        EXPECT_EQ(told.modes->isEngaged, truth.isAutopilot);
        EXPECT_EQ(told.modes->isVnav, truth.isVnav);
        EXPECT_EQ(told.modes->isAltitudeHold, truth.isAltitudeHold);
        EXPECT_EQ(told.modes->isApproach, truth.isApproach);
        EXPECT_EQ(told.modes->isLnav, truth.isLnav);
    }

    void content(airspace::TargetStateVersion1 const& told) {
        this->told("target state version 1");
        ASSERT_TRUE(_profile.selection);
        value(told.targetAltitudeFt, _profile.selection->altitude, 100);
        angle(told.targetDirectionDegrees, _profile.selection->heading, 1);
        EXPECT_EQ(told.verticalMode == 3, _state.verticalRate == 0.0);
        quality(told);
        EXPECT_EQ((told.capabilityMode & 2) == 0, _profile.capabilities.hasAcas);
        EXPECT_EQ((told.capabilityMode & 1) != 0, _state.advisory == simulate::AdvisoryPhase::Active);
        EXPECT_EQ(told.emergency, _profile.emergency);
    }

    template <class Content> void quality(Content const& told) {
        EXPECT_EQ(told.nacP, _profile.accuracies.position);
        EXPECT_EQ(told.sil, _profile.accuracies.sourceIntegrity);
        EXPECT_EQ(told.isNicBaroChecked, _profile.accuracies.isBarometerChecked);
    }

    void content(airspace::OperationalStatus const& told) {
        auto const kind = _profile.onGround ? "surface status version " : "airborne status version ";
        this->told(kind + std::to_string(told.version));
        EXPECT_EQ(told.version, version());
        if (version() == 0) return;
        auto const& accuracies = _profile.accuracies;
        auto const& capabilities = _profile.capabilities;
        EXPECT_EQ(told.nacP, accuracies.position);
        EXPECT_EQ(told.sil, accuracies.sourceIntegrity);
        EXPECT_EQ(told.nicSupplementA, _profile.quality.supplementA);
        EXPECT_EQ(told.isMagneticNorth, capabilities.isMagneticNorth);
        EXPECT_EQ(told.isAdvisoryActive, _state.advisory == simulate::AdvisoryPhase::Active);
        EXPECT_EQ(told.isIdentActive, _state.isIdent);
        if (_profile.onGround) {
            EXPECT_EQ(told.isTrackHeading, capabilities.isHeadingOnSurface);
            EXPECT_EQ(told.lengthWidth, capabilities.lengthWidth);
            EXPECT_EQ(told.isLowPower, capabilities.isLowPower);
        } else {
            EXPECT_EQ(told.isTcasOperational, capabilities.hasAcas);
            EXPECT_EQ(told.isNicBaroChecked, accuracies.isBarometerChecked);
            EXPECT_EQ(told.reportsAirVelocity, capabilities.reportsAirVelocity);
            EXPECT_EQ(told.reportsTargetState, capabilities.reportsTargetState);
        }
        if (version() == 1) {
            EXPECT_EQ(told.hasTrafficDisplay, capabilities.receivesSquitters);
            return;
        }
        EXPECT_EQ(told.receivesExtendedSquitter, capabilities.receivesSquitters);
        EXPECT_EQ(told.receivesUat, capabilities.receivesUat);
        EXPECT_EQ(told.hasSingleAntenna, capabilities.hasSingleAntenna);
        EXPECT_EQ(told.sda, accuracies.designAssurance);
        EXPECT_EQ(told.silSupplement, accuracies.isIntegrityBySample);
        if (_profile.onGround) {
            EXPECT_EQ(told.nacV, accuracies.velocity);
            EXPECT_EQ(told.nicSupplementC, _profile.quality.supplementC);
            EXPECT_EQ(told.antennaOffset, capabilities.antennaOffset);
        } else {
            EXPECT_EQ(told.gva, accuracies.vertical);
        }
    }

    void registered(std::array<std::uint8_t, 7> const& mb) {
        _source = "register";
        auto const number = static_cast<airspace::Register>(_frame.registerNumber);
        std::string_view const bytes(reinterpret_cast<char const*>(mb.data()), mb.size());
        std::visit([this](auto const& held) { this->content(held); }, airspace::readRegister(bytes, number));
    }

    void content(airspace::DataLinkCapability const& told) {
        this->told("1,0");
        EXPECT_EQ(told.isAcasOperational, _profile.capabilities.hasAcas);
        EXPECT_EQ(told.hasSquitter, _profile.transmitter == simulate::Transmitter::Transponder);
        EXPECT_EQ(told.acasVersion, _profile.capabilities.hasAcas ? 1 : 0);
        EXPECT_TRUE(told.hasIdentification);
        EXPECT_TRUE(told.hasCommonUsageCapability);
    }

    void content(airspace::CommonUsageCapability const& told) {
        this->told("1,7");
        for (auto const number : {0x20U, 0x21U, 0x40U, 0x44U, 0x45U, 0x50U, 0x53U, 0x60U}) {
            bool const isServed = std::count(_profile.registers.begin(), _profile.registers.end(), number) != 0;
            EXPECT_EQ(told.serves(static_cast<std::uint8_t>(number)), isServed) << number;
        }
        EXPECT_EQ(told.serves(0x05), _profile.transmitter == simulate::Transmitter::Transponder);
    }

    void content(airspace::AircraftIdentification const& told) {
        this->told("2,0");
        EXPECT_EQ(told.callsign.text(), _profile.callsign);
    }

    void content(airspace::AircraftRegistration const& told) {
        this->told("2,1");
        ASSERT_TRUE(told.registration);
        EXPECT_EQ(told.registration->text(), _profile.registration);
    }

    void content(airspace::ActiveAdvisory const& told) {
        this->told("3,0");
        advised("3,0", told.advisory, true);
    }

    void content(airspace::SelectedIntention const& told) {
        this->told("4,0");
        ASSERT_TRUE(_profile.selection);
        auto const& truth = *_profile.selection;
        value(told.controlPanelAltitudeFt, truth.altitude, 16);
        value(told.pressureSettingHpa, _state.pressureSetting, 0.1);
        EXPECT_EQ(told.flightManagementAltitudeFt.has_value(), truth.isFlightManagement);
        EXPECT_EQ(told.modes.has_value(), truth.isAutopilot);
        if (!told.modes) return;
        EXPECT_EQ(told.modes->isVnav, truth.isVnav);
        EXPECT_EQ(told.modes->isAltitudeHold, truth.isAltitudeHold);
        EXPECT_EQ(told.modes->isApproach, truth.isApproach);
    }

    void content(airspace::RoutineMeteorology const& told) {
        this->told("4,4");
        EXPECT_EQ(told.figureOfMerit, 2);
        value(told.windSpeedKt, _state.windSpeed, 1);
        angle(told.windDirectionDegrees, _state.windDirection, 180.0 / 256);
        value(told.staticAirTemperatureCelsius, _state.temperature, 0.25);
        value(told.staticPressureHpa, _state.pressure, 1);
        value(told.humidityPercent, _profile.weather.humidity, 100.0 / 64);
        ASSERT_TRUE(told.turbulence);
        EXPECT_EQ(static_cast<unsigned>(*told.turbulence), _profile.weather.turbulence);
    }

    void content(airspace::HazardMeteorology const& told) {
        this->told("4,5");
        value(told.staticAirTemperatureCelsius, _state.temperature, 0.25);
        value(told.staticPressureHpa, _state.pressure, 1);
        ASSERT_TRUE(told.turbulence);
        EXPECT_EQ(static_cast<unsigned>(*told.turbulence), _profile.weather.turbulence);
    }

    void content(airspace::AirReferencedState const& told) {
        this->told("5,3");
        angle(told.magneticHeadingDegrees, _state.magneticHeading, 90.0 / 512);
        value(told.indicatedAirspeedKt, _state.indicatedAirspeed, 1);
        value(told.mach, _state.mach, 0.008);
        value(told.trueAirspeedKt, _state.trueAirspeed, 0.5);
        value(told.verticalRateFtMin, _state.verticalRate, 64);
    }

    void content(airspace::TrackAndTurn const& told) {
        this->told("5,0");
        value(told.rollDegrees, _state.roll, 45.0 / 256);
        angle(told.trueTrackDegrees, _state.track, 90.0 / 512);
        value(told.groundSpeedKt, _state.groundSpeed, 2);
        value(told.trackRateDegreesPerSecond, _state.trackRate, 8.0 / 256);
        value(told.trueAirspeedKt, _state.trueAirspeed, 2);
        if (std::fabs(_state.roll) > 0) seen("turn");
    }

    void content(airspace::HeadingAndSpeed const& told) {
        this->told("6,0");
        angle(told.magneticHeadingDegrees, _state.magneticHeading, 90.0 / 512);
        value(told.indicatedAirspeedKt, _state.indicatedAirspeed, 1);
        value(told.mach, _state.mach, 2.048 / 512);
        value(told.barometricVerticalRateFtMin, _state.verticalRate, 32);
        EXPECT_EQ(told.inertialVerticalRateFtMin.has_value(), _profile.capabilities.tellsInertialRate);
        if (told.inertialVerticalRateFtMin) value(told.inertialVerticalRateFtMin, _state.gnssVerticalRate, 32);
    }

    unsigned version() const { return std::min(_aircraft.version(), 2U); }

    simulate::Aircraft const& _aircraft;
    simulate::Profile const& _profile;
    simulate::FlightState _state;
    simulate::Frame const& _frame;
    Kinds& _kinds;
    std::string _source;
    std::uint8_t _typeCode = 0;
    std::uint8_t _subtype = 0;
};

Kinds compared(std::vector<simulate::Place> const& places) {
    simulate::Settings settings;
    settings.aircraft = 250;
    settings.seconds = 60;
    settings.places = places;
    simulate::Traffic traffic(settings);
    Kinds kinds;
    while (auto const frame = traffic.next()) {
        auto const& aircraft = traffic.aircraft()[frame->aircraft];
        SCOPED_TRACE(simulate::addressText(aircraft.profile()));
        std::visit(Comparison(aircraft, *frame, kinds), airspace::read(frame->bytes));
        if (testing::Test::HasFailure()) break; // one is enough to look at
    }
    return kinds;
}

} // namespace

TEST(SimulatedMessages, SayWhatIsTrueWithinTheirSteps) { compared({{48.35, 11.79}}); }

TEST(SimulatedMessages, SayWhatIsTrueAllOverTheEarth) { compared({}); }

TEST(SimulatedMessages, AreOfAllKinds) {
    auto const kinds = compared({{48.35, 11.79}, {-33.9, 18.6}});
    for (auto const* const kind : {"df0", "df4", "df5", "df11 squitter", "df11 ii", "df11 si", "df16", "df20", "df21",
             "df16 advisory", "df16 terminated", "25 ft", "100 ft", "ident", "alert", "turn", "df17 no position",
             "df17 position", "df17 gnss position", "df17 surface position", "df17 identification", "df17 velocity 1",
             "df17 velocity 2", "df17 velocity 3", "df17 velocity 4", "df17 emergency status", "df17 advisory",
             "df17 terminated", "df17 target state", "df17 target state version 1", "df17 test message",
             "df17 airborne status version 0", "df17 airborne status version 1", "df17 airborne status version 2",
             "df17 surface status version 0", "df17 surface status version 1", "df17 surface status version 2",
             "cf0 surface position", "cf0 identification", "cf1 surface position", "cf1 identification", "cf2 position",
             "cf2 velocity 1", "cf2 identification", "cf3 coarse position", "cf5 position", "cf5 velocity 1",
             "cf5 identification", "cf6 position", "cf6 velocity 1", "cf6 identification", "cf6 emergency status",
             "cf6 target state", "cf6 airborne status version 2", "register 1,0", "register 1,7", "register 2,0",
             "register 2,1", "register 3,0", "register 4,0", "register 4,4", "register 4,5", "register 5,0",
             "register 5,3", "register 6,0", "3,0 advisory", "3,0 terminated"}) {
        EXPECT_GT(kinds.count(kind), 0U) << kind;
    }
}
