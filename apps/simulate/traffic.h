// SPDX-License-Identifier: MIT
#pragma once

#include "simulate/fleet.h"
#include "simulate/flight.h"
#include "simulate/random.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <queue>
#include <string>
#include <vector>

namespace quorvel::simulate {

struct Settings {
    std::size_t aircraft = 20;
    double seconds = 60.0;
    std::uint64_t seed = 1;
    double bitErrors = 0.0;     ///< share of frames with one to three inverted bits, 0 to 1
    std::vector<Place> places;  ///< what the aircraft fly around; random places anywhere on earth when empty
    double radius = 100.0;      ///< how far around, nautical miles
    unsigned interrogators = 3; ///< radars that the aircraft answer, with the codes 1, 2, 3 and so on
    Mix mix = Mix::All;         ///< which kinds of aircraft
};

/// One frame on the air.
struct Frame {
    std::uint64_t nanoseconds; ///< since the start
    std::string bytes;         ///< 7 or 14
    std::size_t aircraft;      ///< number of the sender in `Traffic::aircraft()`
    bool damaged;
    unsigned registerNumber = 0; ///< of a Comm-B reply the register that it holds, 0x40 for 4,0; else 0
};

/// The frames that simulated aircraft send, in the order of their times, no two at the same. The same
/// settings give the same frames.
class Traffic {
public:
    explicit Traffic(Settings const& settings);

    std::vector<Aircraft> const& aircraft() const { return _aircraft; }

    /// The next frame, or nothing when the time is over.
    std::optional<Frame> next();

private:
    struct Event {
        std::uint64_t nanoseconds;
        std::uint32_t aircraft;
        std::uint32_t kind; // index into the table of transmissions, then the interrogators
        std::uint32_t count;
        bool operator>(Event const& other) const;
    };

    void schedule(std::uint32_t aircraft);
    void scheduleAgain(Event event);
    Frame frameOf(Event const& event) const;
    Frame interrogated(Event const& event) const;
    bool damage(std::string& bytes);

    Random _random;
    std::uint64_t _end; // nanoseconds
    double _bitErrors;
    unsigned _interrogators;
    Mix _mix;
    std::vector<Aircraft> _aircraft;
    std::priority_queue<Event, std::vector<Event>, std::greater<>> _events;
    std::uint64_t _last = 0;
};

} // namespace quorvel::simulate
