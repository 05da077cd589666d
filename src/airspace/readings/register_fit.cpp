// SPDX-License-Identifier: MIT
#include "airspace/readings/register_fit.h"

#include "airspace/readings/six_bit_text.h"

#include <cstdlib>
#include <utility>

namespace quorvel::airspace {

namespace {

constexpr std::uint64_t mask(unsigned first, unsigned last) { return RegisterBits::mask(first, last); }

// Bits that are always the same in a register.
bool hasFixed(RegisterBits const& mb, std::uint64_t fixed, std::uint64_t constant) {
    return (mb.value() & fixed) == constant;
}

bool isNumbered(Register number, RegisterBits const& mb) {
    return mb.number(1, 8) == static_cast<std::uint8_t>(number);
}

// A value that follows its status bit.
struct Guarded {
    unsigned status;
    unsigned last;

    // All bits of the value if the status bit is 0.
    constexpr std::uint64_t bitsNotThere(std::uint64_t bits) const {
        return mask(status + 1, last) & ((bits >> (56 - status) & 1) - 1);
    }
};

// Whether every value is 0 whose status bit is.
template <Guarded... fields> bool hasNoStrayValue(RegisterBits const& mb) {
    return (mb.value() & (fields.bitsNotThere(mb.value()) | ...)) == 0;
}

constexpr std::uint64_t kNeverInCapability = mask(25, 26) | mask(30, 56);
constexpr std::uint64_t kServesIdentification = mask(7, 7); // as each transponder of level 2 and above does
constexpr std::uint64_t kNeverInAdvisory = mask(16, 22);    // for advisories in the horizontal
constexpr std::uint64_t kNeverInIntention = mask(40, 47) | mask(52, 53);

// Version 5 brought the overlay command, which it requires. Source: ICAO Doc 9871, table A-2-16.
bool hasKnownVersion(RegisterBits const& mb) { return mb.flag(15) == (mb.number(17, 23) >= 5); }

bool isRegistration(RegisterBits const& mb) {
    return (!mb.flag(1) || isSixBitText<7>(mb.value() >> 13)) && (!mb.flag(44) || isSixBitText<2>(mb.value()));
}

bool hasKnownThreat(RegisterBits const& mb) {
    return mb.number(29, 30) != static_cast<std::uint32_t>(ThreatType::Reserved);
}

// Figures of merit from 5 on are not assigned.
bool hasKnownMerit(RegisterBits const& mb) { return mb.number(1, 4) <= 4; }

// Transport aircraft bank up to 30 degrees, and their speed over ground and through the air differ by the wind.
constexpr double kMaxRollDegrees = 35.0;
constexpr int kMaxSpeedKt = 600;
constexpr int kMaxWindKt = 200;

bool canTurnSo(RegisterBits const& mb) {
    constexpr int maxRoll = static_cast<int>(kMaxRollDegrees * 256 / 45);
    auto const groundSpeed = static_cast<int>(2 * mb.number(25, 34));
    auto const airspeed = static_cast<int>(2 * mb.number(47, 56));
    bool const hasBothSpeeds = mb.flag(24) && mb.flag(46);
    return std::abs(mb.signedNumber(2, 11)) <= maxRoll && groundSpeed <= kMaxSpeedKt && airspeed <= kMaxSpeedKt &&
           (!hasBothSpeeds || std::abs(groundSpeed - airspeed) <= kMaxWindKt);
}

// Below the speed of sound, and the rates of a transport aircraft.
constexpr std::uint32_t kMaxIndicatedAirspeedKt = 500;
constexpr std::uint32_t kMaxMach = 250; // 1.0
constexpr int kMaxRate = 6000 / 32;     // 6,000 ft/min

bool canFlySo(RegisterBits const& mb) {
    return mb.number(14, 23) <= kMaxIndicatedAirspeedKt && mb.number(25, 34) <= kMaxMach &&
           std::abs(mb.signedNumber(36, 45)) <= kMaxRate && std::abs(mb.signedNumber(47, 56)) <= kMaxRate;
}

bool canFlySoByAir(RegisterBits const& mb) {
    return mb.number(14, 23) <= kMaxIndicatedAirspeedKt && mb.number(25, 33) <= kMaxMach / 2 &&
           mb.number(35, 46) <= 2 * kMaxSpeedKt && std::abs(mb.signedNumber(48, 56)) <= kMaxRate / 2;
}

// Winds, pressures and temperatures from the ground to the top of the airways.
constexpr std::uint32_t kMaxPressureHpa = 1100;
constexpr std::uint32_t kMinPressureHpa = 100;
constexpr int kMaxTemperature = 60 * 4;
constexpr int kMinTemperature = -90 * 4;

bool isAirPressure(std::uint32_t hpa) { return hpa >= kMinPressureHpa && hpa <= kMaxPressureHpa; }
bool isAirTemperature(int quarters) { return quarters >= kMinTemperature && quarters <= kMaxTemperature; }

bool isWeather(RegisterBits const& mb) {
    return mb.number(6, 14) <= kMaxWindKt + 50 && isAirTemperature(mb.signedNumber(24, 34)) &&
           (!mb.flag(35) || isAirPressure(mb.number(36, 46)));
}

bool isHazardWeather(RegisterBits const& mb) {
    return isAirTemperature(mb.signedNumber(17, 26)) && (!mb.flag(27) || isAirPressure(mb.number(28, 38)));
}

// Whether the bits can be those of a register.
template <Register number> bool fits(RegisterBits const& mb);

template <> bool fits<Register::DataLinkCapability>(RegisterBits const& mb) {
    return isNumbered(Register::DataLinkCapability, mb) && hasFixed(mb, mask(10, 14), 0) && hasKnownVersion(mb);
}

template <> bool fits<Register::CommonUsageCapability>(RegisterBits const& mb) {
    return hasFixed(mb, kNeverInCapability | kServesIdentification, kServesIdentification);
}

template <> bool fits<Register::AircraftIdentification>(RegisterBits const& mb) {
    return isNumbered(Register::AircraftIdentification, mb) && isSixBitText<8>(mb.value());
}

template <> bool fits<Register::AircraftRegistration>(RegisterBits const& mb) {
    return hasNoStrayValue<Guarded{1, 43}, Guarded{44, 56}>(mb) && isRegistration(mb);
}

template <> bool fits<Register::ActiveAdvisory>(RegisterBits const& mb) {
    return isNumbered(Register::ActiveAdvisory, mb) && hasFixed(mb, kNeverInAdvisory, 0) && hasKnownThreat(mb);
}

template <> bool fits<Register::SelectedIntention>(RegisterBits const& mb) {
    return hasFixed(mb, kNeverInIntention, 0) &&
           hasNoStrayValue<Guarded{1, 13}, Guarded{14, 26}, Guarded{27, 39}, Guarded{48, 51}, Guarded{54, 56}>(mb);
}

template <> bool fits<Register::RoutineMeteorology>(RegisterBits const& mb) {
    return hasNoStrayValue<Guarded{5, 23}, Guarded{35, 46}, Guarded{47, 49}, Guarded{50, 56}>(mb) &&
           hasKnownMerit(mb) && isWeather(mb);
}

template <> bool fits<Register::HazardMeteorology>(RegisterBits const& mb) {
    return hasFixed(mb, mask(52, 56), 0) &&
           hasNoStrayValue<Guarded{1, 3}, Guarded{4, 6}, Guarded{7, 9}, Guarded{10, 12}, Guarded{13, 15},
               Guarded{16, 26}, Guarded{27, 38}, Guarded{39, 51}>(mb) &&
           isHazardWeather(mb);
}

template <> bool fits<Register::TrackAndTurn>(RegisterBits const& mb) {
    return hasNoStrayValue<Guarded{1, 11}, Guarded{12, 23}, Guarded{24, 34}, Guarded{35, 45}, Guarded{46, 56}>(mb) &&
           canTurnSo(mb);
}

template <> bool fits<Register::AirReferencedState>(RegisterBits const& mb) {
    return hasNoStrayValue<Guarded{1, 12}, Guarded{13, 23}, Guarded{24, 33}, Guarded{34, 46}, Guarded{47, 56}>(mb) &&
           canFlySoByAir(mb);
}

template <> bool fits<Register::HeadingAndSpeed>(RegisterBits const& mb) {
    return hasNoStrayValue<Guarded{1, 12}, Guarded{13, 23}, Guarded{24, 34}, Guarded{35, 45}, Guarded{46, 56}>(mb) &&
           canFlySo(mb);
}

// An empty register is what a transponder sends for one that it does not serve.
bool isEmpty(RegisterBits const& mb) { return mb.value() == 0; }

template <std::size_t... places> std::uint32_t placesOfFitting(RegisterBits const& mb, std::index_sequence<places...>) {
    return ((fits<kRegisters[places]>(mb) ? 1U << places : 0U) | ...);
}

template <Register... numbers> RegisterSet fittingOf(RegisterBits const& mb) {
    RegisterSet fitting;
    if (isEmpty(mb)) return fitting;
    ((fits<numbers>(mb) ? fitting.insert(numbers) : void()), ...);
    return fitting;
}

} // namespace

std::uint32_t allFittingRegisters(RegisterBits const& mb) {
    return isEmpty(mb) ? 0 : placesOfFitting(mb, std::make_index_sequence<kRegisters.size()>());
}

RegisterSet fittingRegisters(std::string_view bytes) {
    if (bytes.size() != RegisterBits::kBytes) return {};
    return fittingOf<Register::DataLinkCapability, Register::CommonUsageCapability, Register::AircraftIdentification,
        Register::ActiveAdvisory, Register::SelectedIntention, Register::TrackAndTurn, Register::HeadingAndSpeed>(
        RegisterBits(bytes));
}

} // namespace quorvel::airspace
