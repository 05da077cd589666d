// SPDX-License-Identifier: MIT
#pragma once

#include "host/output.h"

#include "support/bytes.h"

#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace quorvel::host::test {

inline constexpr TimeMs kNow = 1'714'566'896'789; // 2024-05-01T12:34:56.789Z

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

/// An aircraft of which nothing is known but that it was heard.
inline Aircraft heardAircraft(unsigned int address, TimeMs lastUpdate) {
    Aircraft aircraft;
    aircraft.report = std::make_shared<modes::ADSBTargetReport>();
    aircraft.report->setIcaoAddress(address);
    aircraft.report->setIcaoAddressValid(true);
    aircraft.report->setLastUpdate(lastUpdate);
    aircraft.report->setMopsVersion(modes::MOPS_V0);
    aircraft.now = kNow;
    aircraft.messages = 1;
    return aircraft;
}

/// An airliner of which everything is known, since `age` milliseconds.
inline Aircraft knownAircraft(TimeMs age = 2'500) {
    auto const time = kNow - age;
    auto aircraft = heardAircraft(0x4840D6, time);
    aircraft.messages = 321;
    aircraft.positionsRefused = 2;
    auto& report = *aircraft.report;
    report.setTrackId(7);
    report.setTrackIdValid(true);
    report.setCallsign("KLM1023 ");
    report.setCallsignLastUpdate(time);
    report.setCallsignLastChange(time - 60'000);
    report.setEmitterCategory(3);
    report.setEmitterCategoryLastUpdate(time);
    report.setSquawk(04032);
    report.setSquawkLastUpdate(time);
    report.setPosition(52.25, -3.9375);
    report.setPositionLastUpdate(time);
    report.setSignalAmplitude(128);
    report.setSignalAmplitudeLastUpdate(time);
    report.setAltitudeBaro(38000);
    report.setAltitudeBaroLastUpdate(time);
    report.setGroundSpeed(451.25);
    report.setGroundSpeedLastUpdate(time);
    report.setHeading(92.5);
    report.setHeadingLastUpdate(time);
    report.setVerticalRateBaro(-640);
    report.setVerticalRateBaroLastUpdate(time);
    report.setGroundStatus(false);
    report.setGroundStatusLastUpdate(time);
    report.setSpiStatusValid(true);
    report.setAlertStatusValid(true);
    report.setMopsVersion(modes::MOPS_V2);
    report.setMopsVersionConfirmed(true);
    report.setNIC(8);
    report.setNICValid(true);
    report.setNACp(9);
    report.setNACpValid(true);
    report.setSIL(3);
    report.setSILValid(true);
    return aircraft;
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
    return picture;
}

inline Frame frameOf(std::string const& hex) {
    Frame frame{std::make_shared<modes::ModeSEncapsulation>(), {}, 0};
    frame.record->setData(modes::test::fromHex(hex));
    return frame;
}

inline std::string content(std::string const& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

} // namespace quorvel::host::test
