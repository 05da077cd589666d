// SPDX-License-Identifier: MIT
// Simulated traffic goes down the whole road, and the targets must be where the simulator put the aircraft.
#include <modes/modes.h>

#include "simulate/stream_writer.h"
#include "simulate/traffic.h"

#include "support/captured_log.h"
#include "support/steered_clock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace quorvel::modes;
namespace simulate = quorvel::simulate;

namespace {

constexpr std::uint64_t kMidnight = 1'714'521'600'000; // 2024-05-01 00:00:00 UTC
constexpr std::uint64_t kStartOfDay = 36'000;          // seconds
constexpr double kDegrees = 3.14159265358979323846 / 180;

double milesBetween(simulate::Place const& a, double latitude, double longitude) {
    double const north = (a.latitude - latitude) * 60;
    double const east = std::remainder(a.longitude - longitude, 360.0) * 60 * std::cos(latitude * kDegrees);
    return std::hypot(north, east);
}

double secondOf(unsigned long long time) { return static_cast<double>(time - kMidnight) / 1000 - kStartOfDay; }

struct Flight {
    char const* name;
    simulate::Encoding encoding;
    std::vector<simulate::Place> places;
    std::uint64_t seed;
    double bitErrors;
};

std::ostream& operator<<(std::ostream& out, Flight const& flight) { return out << flight.name; }

ModeSEncapsulation::Format formatOf(simulate::Encoding encoding) {
    return encoding == simulate::Encoding::BeastPlain ? ModeSEncapsulation::Beast : ModeSEncapsulation::Avr;
}

class SimulatedFlights : public testing::TestWithParam<Flight> {
protected:
    test::SteeredClock clock{kMidnight + kStartOfDay * 1000};
    test::CapturedLog log{Log::Error};
    ModeSDecoder decoder;
    ADSBTracker tracker;
    std::vector<simulate::Aircraft> aircraft;

    void fly(double seconds) {
        simulate::Settings settings;
        settings.aircraft = 40;
        settings.seconds = seconds;
        settings.seed = GetParam().seed;
        settings.bitErrors = GetParam().bitErrors;
        settings.mix = simulate::Mix::Adsb;
        settings.places = GetParam().places;
        simulate::Traffic traffic(settings);
        aircraft = traffic.aircraft();
        std::string stream;
        while (auto const frame = traffic.next()) {
            // without time stamps the host's clock is the time of the frame
            clock.set(kMidnight + kStartOfDay * 1000 + frame->nanoseconds / 1'000'000);
            simulate::appendFrame(stream, *frame, GetParam().encoding, kStartOfDay * 1'000'000'000);
            for (auto const& record : ModeSEncapsulation::extract(stream, formatOf(GetParam().encoding))) {
                tracker.procModeSMsg(decoder.decode(ModeSMessage::DOWNLINK, record));
            }
        }
        EXPECT_EQ(stream, "");
    }

    // Where the target is against where the aircraft was then. The encoding resolves 5 m; times are whole
    // milliseconds.
    void expectPlace(ADSBTarget const& target, simulate::Aircraft const& real) {
        bool const hasPosition = real.equipment() != simulate::Equipment::None && !real.onGround();
        EXPECT_EQ(target.positionValid(), hasPosition);
        if (!target.positionValid()) return;
        auto const truth = real.at(secondOf(target.positionLastUpdate()));
        EXPECT_LT(milesBetween(truth.place, target.latitude(), target.longitude()), 0.006)
            << truth.place.latitude << ", " << truth.place.longitude;
        EXPECT_LE(std::fabs(target.latitude()), 90);
        EXPECT_LE(std::fabs(target.longitude()), 180);
    }

    void expectMovement(ADSBTarget const& target, simulate::Aircraft const& real) {
        EXPECT_EQ(target.groundSpeedValid(), real.equipment() != simulate::Equipment::None);
        if (!target.groundSpeedValid()) return;
        auto const truth = real.at(secondOf(target.groundSpeedLastUpdate()));
        EXPECT_NEAR(target.groundSpeed(), truth.groundSpeed, 1.0) << "components are sent in whole knots";
        if (truth.groundSpeed < 100) return; // the angle of few knots is coarse
        EXPECT_LT(std::fabs(std::remainder(target.heading() - truth.track, 360.0)), 0.6);
    }

    void expectIdentity(ADSBTarget const& target, simulate::Aircraft const& real) {
        EXPECT_EQ(target.icaoAddr(), real.address());
        EXPECT_EQ(target.squawk(), real.squawk());
        if (real.equipment() == simulate::Equipment::None) {
            EXPECT_FALSE(target.callsignValid());
            return;
        }
        auto callsign = real.callsign();
        callsign.resize(8, ' ');
        EXPECT_EQ(target.callsign(), callsign);
        EXPECT_EQ(target.emitterCategory(), real.category());
        EXPECT_EQ(target.mopsVersion(), static_cast<unsigned>(real.equipment()));
        EXPECT_TRUE(target.mopsVersionConfirmed());
    }
};

} // namespace

TEST_P(SimulatedFlights, AreTrackedWhereTheyAre) {
    fly(40);
    for (auto const& real : aircraft) {
        auto const target = tracker.findTarget(real.address());
        if (real.equipment() == simulate::Equipment::None) {
            if (!target) continue; // nothing confirms its address but interrogators that come to be trusted
        } else {
            ASSERT_TRUE(target) << real.callsign();
        }
        SCOPED_TRACE(real.callsign());
        expectIdentity(*target, real);
        expectPlace(*target, real);
        expectMovement(*target, real);
    }
}

INSTANTIATE_TEST_SUITE_P(Everywhere, SimulatedFlights,
    testing::Values(Flight{"InEurope", simulate::Encoding::BeastPlain, {{48.35, 11.79}}, 1, 0.0},
        Flight{"AtTheNorthPole", simulate::Encoding::BeastPlain, {{90, 0}}, 2, 0.0},
        Flight{"AtTheSouthPole", simulate::Encoding::AvrStamped, {{-90, 0}}, 3, 0.0},
        Flight{"AtTheDateLine", simulate::Encoding::BeastPlain, {{0, 180}, {52, -179.9}, {-17, 179.9}}, 4, 0.0},
        Flight{"AtTheOrigin", simulate::Encoding::AvrStamped, {{0, 0}}, 5, 0.0},
        Flight{"AtTheBordersOfZones", simulate::Encoding::BeastPlain,
            {{10.4704713, 30}, {59.95, -60}, {87, 100}, {-86.5, 5}}, 6, 0.0},
        Flight{"WithoutTimeStamps", simulate::Encoding::Avr, {}, 7, 0.0},
        Flight{"Anywhere", simulate::Encoding::BeastPlain, {}, 8, 0.0},
        Flight{"AnywhereElse", simulate::Encoding::AvrStamped, {}, 9, 0.0}),
    [](auto const& flight) { return std::string(flight.param.name); });

TEST(DamagedStream, YieldsNoAircraftThatDoesNotExist) {
    test::CapturedLog log(Log::Error);
    simulate::Settings settings;
    settings.aircraft = 60;
    settings.seconds = 60;
    settings.bitErrors = 0.1;
    settings.mix = simulate::Mix::Adsb;
    simulate::Traffic traffic(settings);
    ModeSDecoder decoder;
    ADSBTracker tracker;
    std::size_t repaired = 0;
    std::size_t damagedSquitters = 0;
    while (auto const frame = traffic.next()) {
        auto const message = decoder.decode(ModeSMessage::DOWNLINK, frame->bytes);
        tracker.procModeSMsg(message);
        bool const isSquitter = static_cast<unsigned char>(frame->bytes[0]) >> 3 == 17;
        if (!frame->damaged || !isSquitter) continue;
        ++damagedSquitters;
        if (message && message->confidence() == ModeSMessage::HIGH) ++repaired;
    }
    // A third has three damaged bits, and those in format and parity fields cannot be repaired: 43 % remain.
    // Three damaged bits may look like two others: a few strays get through, as in reality.
    EXPECT_GT(repaired * 100, damagedSquitters * 43);
    std::size_t strays = 0;
    for (auto const& target : tracker.allTargets()) {
        bool const exists = std::any_of(traffic.aircraft().begin(), traffic.aircraft().end(),
            [&](auto const& real) { return real.address() == target->icaoAddr(); });
        strays += exists ? 0U : 1U;
    }
    EXPECT_LT(strays, 30U);
}
