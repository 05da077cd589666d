// SPDX-License-Identifier: MIT
#pragma once

#include "outputs/output.h"

#include "support/bytes.h"
#include "support/temporary_folder.h"

#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace quorvel::outputs::test {

using modes::test::content;

inline constexpr airspace::TimeMs kNow = 1'714'566'896'789; // 2024-05-01T12:34:56.789Z

/// Keeps what is written to it: items, and how often they were handed on.
struct Written {
    std::vector<std::string> items;
    int flushes = 0;

    std::string text() const {
        std::string all;
        for (auto const& item : items) all += item;
        return all;
    }
};

class MemorySink : public Sink {
public:
    explicit MemorySink(Written& written) : _written(written) {}
    void write(std::string_view item) override { _written.items.emplace_back(item); }
    void flush() override { ++_written.flushes; }

private:
    Written& _written;
};

inline std::unique_ptr<Sink> sinkTo(Written& written) { return std::make_unique<MemorySink>(written); }

/// An aircraft with nothing known except that it was heard.
inline Aircraft heardAircraft(std::uint32_t address, airspace::TimeMs heard) {
    Aircraft aircraft;
    aircraft.address = address;
    aircraft.heard = heard;
    aircraft.mopsVersion.value = modes::MOPS_V0;
    aircraft.now = kNow;
    aircraft.messages = 1;
    return aircraft;
}

/// An airliner with everything known, `age` milliseconds old.
inline Aircraft knownAircraft(airspace::TimeMs age = 2'500) {
    auto const time = kNow - age;
    auto aircraft = heardAircraft(0x4840D6, time);
    aircraft.messages = 321;
    aircraft.positionsRefused = 2;
    aircraft.trackNumber = 7;
    auto const AdsB = airspace::Source::AdsB;
    aircraft.callsign = {"KLM1023 ", AdsB, time, time - 60'000};
    aircraft.emitterCategory = {airspace::EmitterCategory{'A', 3}, AdsB, time, 0};
    aircraft.squawk = {airspace::Squawk{04032}, airspace::Source::ModeS, time, 0};
    aircraft.position = {airspace::Place{52.25, -3.9375}, AdsB, time, 0};
    aircraft.signalAmplitude = {std::uint8_t{128}, AdsB, time, 0};
    aircraft.altitudeBaro = {38000, AdsB, time, 0};
    aircraft.groundSpeed = {451.25, AdsB, time, 0};
    aircraft.track = {92.5, AdsB, time, 0};
    aircraft.verticalRateBaro = {-640, AdsB, time, 0};
    aircraft.groundStatus = {false, AdsB, time, 0};
    aircraft.spiStatus.value = false;
    aircraft.alertStatus.value = false;
    aircraft.mopsVersion.value = modes::MOPS_V2;
    aircraft.mopsVersionConfirmed = true;
    aircraft.nic.value = 8;
    aircraft.nacp.value = 9;
    aircraft.sil.value = 3;
    return aircraft;
}

/// The core's report of the airliner, and of others as far as these tests look at their pages.
inline std::shared_ptr<modes::ADSBTargetReport> reportOf(Aircraft const& aircraft) {
    auto result = std::make_shared<modes::ADSBTargetReport>();
    auto& report = *result;
    report.setTrackId(aircraft.trackNumber);
    report.setTrackIdValid(aircraft.trackNumber != 0);
    report.setIcaoAddress(aircraft.address);
    report.setIcaoAddressValid(true);
    report.setLastUpdate(aircraft.heard);
    if (aircraft.callsign.value) report.setCallsign(*aircraft.callsign.value);
    if (aircraft.emitterCategory.value) report.setEmitterCategory(aircraft.emitterCategory.value->number);
    if (aircraft.squawk.value) report.setSquawk(aircraft.squawk.value->code);
    if (auto const& place = aircraft.position.value) report.setPosition(place->latitude, place->longitude);
    if (aircraft.signalAmplitude.value) report.setSignalAmplitude(*aircraft.signalAmplitude.value);
    if (aircraft.altitudeBaro.value) report.setAltitudeBaro(*aircraft.altitudeBaro.value);
    if (aircraft.groundSpeed.value) report.setGroundSpeed(*aircraft.groundSpeed.value);
    if (aircraft.track.value) report.setHeading(*aircraft.track.value);
    if (aircraft.verticalRateBaro.value) report.setVerticalRateBaro(*aircraft.verticalRateBaro.value);
    auto const version = aircraft.mopsVersion.value;
    report.setMopsVersion(version ? static_cast<modes::MOPSVersion>(*version) : modes::MOPS_UNKNOWN);
    report.setNIC(aircraft.nic.value.value_or(0));
    report.setNICValid(aircraft.nic.value.has_value());
    report.setNACp(aircraft.nacp.value.value_or(0));
    report.setNACpValid(aircraft.nacp.value.has_value());
    report.setSIL(aircraft.sil.value.value_or(0));
    report.setSILValid(aircraft.sil.value.has_value());
    return result;
}

inline Picture pictureOf(std::vector<Aircraft> aircraft) {
    Picture picture;
    picture.now = kNow;
    picture.aircraft = std::move(aircraft);
    SourceState source;
    source.name = "tcp://receiver:30005";
    source.state = "connected";
    source.now = kNow;
    source.lastFrame = kNow - 100;
    picture.sources.push_back(source);
    picture.report = reportOf;
    return picture;
}

inline airspace::Frame frameOf(std::string const& hex) { return airspace::Frame::of(modes::test::fromHex(hex)); }

} // namespace quorvel::outputs::test
