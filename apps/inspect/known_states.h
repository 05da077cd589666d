// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/message.h>
#include <airspace/register_choice.h>

#include <cmath>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <unordered_set>

namespace quorvel::inspect {

/// A value with its time, which is known around it only.
template <class Value> class Dated {
public:
    void set(Value const& value, double seconds) {
        _value = value;
        _seconds = seconds;
    }

    /// The value, if it is at most `span` seconds from that time.
    std::optional<Value> at(double seconds, double span) const {
        return _value && std::abs(seconds - _seconds) <= span ? _value : std::nullopt;
    }

private:
    std::optional<Value> _value;
    double _seconds = 0.0;
};

/// What the messages of a recording tell about each aircraft, for the choice of the registers in its Comm-B replies.
/// They may be taken forward or backward in time.
class KnownStates {
public:
    /// Learns from a message. Of those whose address the parity hides, only if the address was heard otherwise.
    void take(airspace::Message const& message, double seconds);

    /// What is known of an aircraft at a time.
    airspace::KnownState at(std::uint32_t address, double seconds) const;

    /// Whether an intact message named the address, or several replies have it.
    bool isHeard(std::uint32_t address) const;

private:
    struct Aircraft {
        Dated<int> altitudeFt;
        Dated<double> groundSpeedKt;
        Dated<double> trackDegrees;
        Dated<int> verticalRateFtMin;
        Dated<double> headingDegrees;
        Dated<double> indicatedAirspeedKt;
        Dated<double> trueAirspeedKt;
        Dated<double> mach;
        Dated<int> selectedAltitudeFt;
        Dated<double> pressureSettingHpa;
        Dated<airspace::Callsign> callsign;
        Dated<airspace::CommonUsageCapability> capability;
    };
    class Learner;

    static airspace::KnownState stateOf(Aircraft const& aircraft, double seconds);

    std::unordered_map<std::uint32_t, Aircraft> _aircraft; // that are heard
    std::unordered_set<std::uint32_t> _doubtful;           // addresses that the parity of one reply gives
};

} // namespace quorvel::inspect
