// SPDX-License-Identifier: MIT
#include <airspace/target_state.h>

#include "airspace/readings/squitter_contents.h"

namespace quorvel::airspace {

namespace {

constexpr std::uint32_t kLastTargetAltitude = 1010; // 100,000 ft
constexpr std::uint32_t kLastDirection = 359;

std::uint8_t code(RegisterBits const& me, unsigned first, unsigned last) {
    return static_cast<std::uint8_t>(me.number(first, last));
}

void readVersion1(RegisterBits const& me, TargetStateVersion1& state) {
    state.verticalDataSource = code(me, 8, 9);
    state.isMeanSeaLevel = me.flag(10);
    state.targetAltitudeCapability = code(me, 12, 13);
    state.verticalMode = code(me, 14, 15);
    if (auto const altitude = me.number(16, 25); state.verticalDataSource != 0 && altitude <= kLastTargetAltitude) {
        state.targetAltitudeFt = 100 * static_cast<int>(altitude) - 1000;
    }
    state.horizontalDataSource = code(me, 26, 27);
    if (auto const direction = me.number(28, 36); state.horizontalDataSource != 0 && direction <= kLastDirection) {
        state.targetDirectionDegrees = direction;
    }
    state.isDirectionTrack = me.flag(37);
    state.horizontalMode = code(me, 38, 39);
    state.nacP = code(me, 40, 43);
    state.isNicBaroChecked = me.flag(44);
    state.sil = code(me, 45, 46);
    state.capabilityMode = code(me, 52, 53);
    state.emergency = code(me, 54, 56);
}

void readVersion2(RegisterBits const& me, TargetState& state) {
    state.silSupplement = me.flag(8);
    state.altitudeSource = me.flag(9) ? SelectedAltitudeSource::FlightManagement : SelectedAltitudeSource::ControlPanel;
    if (auto const altitude = static_cast<int>(me.number(10, 20)); altitude != 0) {
        state.selectedAltitudeFt = 32 * (altitude - 1);
    }
    if (auto const setting = me.number(21, 29); setting != 0) {
        state.pressureSettingHpa = (8000 + 8 * (setting - 1)) / 10.0;
    }
    if (me.flag(30)) state.selectedHeadingDegrees = me.number(31, 39) * (180.0 / 256);
    state.nacP = code(me, 40, 43);
    state.isNicBaroChecked = me.flag(44);
    state.sil = code(me, 45, 46);
    if (me.flag(47)) state.modes = AutopilotModes{me.flag(48), me.flag(49), me.flag(50), me.flag(52), me.flag(54)};
    state.isTcasOperational = me.flag(53);
}

} // namespace

void readTargetState(SquitterSource const& source, SquitterContent& content) {
    bool const isGroundStations = source.origin == SquitterOrigin::TisB;
    if (source.subtype == 0 && !isGroundStations && source.mayBeOfVersion(1, 1)) {
        readVersion1(source.me, content.emplace<TargetStateVersion1>());
    } else if (source.subtype == 1 && !isGroundStations && source.mayBeOfVersion(2, 2)) {
        readVersion2(source.me, content.emplace<TargetState>());
    } else {
        readUnread(source, content);
    }
}

} // namespace quorvel::airspace
