// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

namespace quorvel::airspace {

/// What the wake of an aircraft is like to those behind it.
enum class WakeVortexClass : std::uint8_t {
    Light,      ///< below 7 t
    Medium,     ///< 7 t up to 136 t
    HighVortex, ///< of medium mass, with the wake of a heavier aircraft
    Heavy,      ///< from 136 t
    Rotorcraft, ///< of a rotor
};

/// What kind of aircraft it is (RTCA DO-260B, 2.2.3.2.5.2).
struct EmitterCategory {
    char set = 0;            ///< 'A' to 'D'; 0 when not known
    std::uint8_t number = 0; ///< 0, no information, to 7

    /// The wake of A1 to A5 and A7; none of other categories, which do not tell the mass.
    std::optional<WakeVortexClass> wakeVortexClass() const {
        if (set != 'A') return std::nullopt;
        switch (number) {
        case 1: return WakeVortexClass::Light;
        case 2:
        case 3: return WakeVortexClass::Medium;
        case 4: return WakeVortexClass::HighVortex;
        case 5: return WakeVortexClass::Heavy;
        case 7: return WakeVortexClass::Rotorcraft;
        default: return std::nullopt;
        }
    }
};

} // namespace quorvel::airspace
