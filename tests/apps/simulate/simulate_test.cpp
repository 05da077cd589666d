// SPDX-License-Identifier: MIT
#include "simulate/bit_writer.h"
#include "simulate/checksum.h"
#include "simulate/cpr_encoder.h"
#include "simulate/flight_truth.h"
#include "simulate/payload_writer.h"
#include "simulate/signal_codes.h"
#include "simulate/squitter_payloads.h"
#include "simulate/standard_air.h"
#include "simulate/stream_writer.h"
#include "simulate/traffic.h"
#include "simulate/transponder.h"

#include "support/bytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <utility>

using namespace quorvel::simulate;
using quorvel::modes::test::fromHex;

namespace {

std::vector<Frame> framesOf(Settings const& settings) {
    Traffic traffic(settings);
    std::vector<Frame> frames;
    while (auto frame = traffic.next()) frames.push_back(*frame);
    return frames;
}

std::string streamOf(Settings const& settings, Encoding encoding) {
    std::string stream;
    for (auto const& frame : framesOf(settings)) appendFrame(stream, frame, encoding, 43'200ULL * 1'000'000'000);
    return stream;
}

unsigned formatOf(Frame const& frame) { return static_cast<unsigned char>(frame.bytes[0]) >> 3; }

// The values of the truth by name; "#" is a number.
struct TruthByName {
    void operator()(std::string_view name, std::string_view text) { texts[std::string(name)] = text; }
    template <class Number> void operator()(std::string_view name, Number) { texts[std::string(name)] = "#"; }

    std::map<std::string, std::string> texts;
};

bool isIntact(std::string const& squitter) {
    return withParity(squitter.substr(0, squitter.size() - 3), 0) == squitter;
}

} // namespace

TEST(BitWriter, PutsNumbersOneAfterTheOther) {
    EXPECT_EQ(BitWriter().put(0x11, 5).put(5, 3).put(0x4840D6, 24).bytes(), fromHex("8D4840D6"));
    EXPECT_EQ(BitWriter().put(1, 1).bytes(), fromHex("80"));
    EXPECT_EQ(BitWriter().bytes(), "");
}

TEST(SimulatedParity, IsThatOfAKnownFrame) {
    auto const frame = fromHex("8D4840D6202CC371C32CE0576098");
    EXPECT_EQ(parityOf(frame.substr(0, 11)), 0x576098U);
    EXPECT_EQ(withParity(frame.substr(0, 11), 0), frame);
    EXPECT_EQ(withParity(frame.substr(0, 11), 0x576098).substr(11), std::string(3, '\0'));
}

TEST(CprEncoder, HasTheZonesOfTheStandardsTable) {
    struct {
        double latitude;
        int zones;
    } const rows[] = {{0, 59}, {10.4, 59}, {10.5, 58}, {-10.5, 58}, {45, 42}, {59.9, 30}, {86.5, 3}, {86.6, 2}, {87, 2},
        {88, 1}, {-90, 1}};
    for (auto const& [latitude, zones] : rows) EXPECT_EQ(longitudeZones(latitude), zones) << latitude;
}

// Both kinds of zones start at the equator and the zero meridian; half a zone is half of the steps.
TEST(CprEncoder, CountsStepsWithinItsZone) {
    for (bool const odd : {false, true}) {
        auto const origin = encodeAirborne(0.0, 0.0, odd);
        EXPECT_EQ(origin.latitude, 0U);
        EXPECT_EQ(origin.longitude, 0U);
        double const latitudeZone = odd ? 360.0 / 59 : 6.0;
        EXPECT_EQ(encodeAirborne(latitudeZone / 2, 0.0, odd).latitude, 65536U);
        EXPECT_EQ(encodeAirborne(-latitudeZone / 4, 0.0, odd).latitude, 98304U);
        EXPECT_EQ(encodeAirborne(0.0, 360.0 / (odd ? 58 : 59) / 2, odd).longitude, 65536U);
        EXPECT_EQ(encodeSurface(latitudeZone / 8, 0.0, odd).latitude, 65536U);
    }
}

TEST(Transponder, SpellsAKnownIdentification) {
    Random random(1);
    auto const aircraft = makeAdsbAircraft(0x4840D6, {52.0, 4.0}, 10.0, random);
    auto const frame = squitter(aircraft, aircraft.at(0), identificationMessage(aircraft));
    EXPECT_EQ(frame.size(), 14U);
    EXPECT_TRUE(isIntact(frame));
    std::string callsign;
    for (unsigned i = 0; i < 8; ++i) {
        unsigned code = 0;
        for (unsigned bit = 40 + 6 * i; bit < 46 + 6 * i; ++bit) {
            auto const byte = static_cast<unsigned>(static_cast<unsigned char>(frame[bit / 8]));
            code = code << 1 | (byte >> (7 - bit % 8) & 1U);
        }
        callsign += code == 32 ? ' ' : static_cast<char>(code < 27 ? 'A' + code - 1 : code);
    }
    EXPECT_EQ(callsign.substr(0, aircraft.callsign().size()), aircraft.callsign());
}

TEST(Aircraft, FliesAGreatCircleAtItsSpeed) {
    Random random(4);
    for (int i = 0; i < 200; ++i) {
        Place const around{random.between(-90, 90), random.between(-180, 180)};
        auto const aircraft = makeAdsbAircraft(1, around, 50.0, random);
        auto const start = aircraft.at(0);
        auto const later = aircraft.at(60);
        double const degrees = 3.14159265358979323846 / 180;
        double const cosine = std::sin(start.place.latitude * degrees) * std::sin(later.place.latitude * degrees) +
                              std::cos(start.place.latitude * degrees) * std::cos(later.place.latitude * degrees) *
                                  std::cos((start.place.longitude - later.place.longitude) * degrees);
        double const miles = std::acos(std::min(1.0, cosine)) * 3440.065;
        EXPECT_NEAR(miles, start.groundSpeed / 60, 0.01) << i;
        for (auto const& state : {start, later}) {
            EXPECT_TRUE(state.track >= 0 && state.track < 360);
            EXPECT_LE(std::fabs(state.place.latitude), 90);
            EXPECT_LE(std::fabs(state.place.longitude), 180);
            EXPECT_GE(state.altitude, 0);
        }
    }
}

// Every aircraft of a sky, in each second of some minutes.
template <class Check> void checkFlights(Check const& check) {
    Settings settings;
    settings.aircraft = 250;
    Traffic const traffic(settings);
    for (auto const& aircraft : traffic.aircraft()) {
        SCOPED_TRACE(addressText(aircraft.profile()));
        for (double second = 1; second < 240; second += 7) check(aircraft, second);
        if (testing::Test::HasFailure()) return;
    }
}

TEST(SimulatedFlight, MovesOverGroundAsItFliesAndAsTheWindBlows) {
    checkFlights([](auto const& aircraft, double second) {
        auto const state = aircraft.at(second);
        auto const vector = [](double speed, double degrees) {
            return std::pair(speed * std::sin(degrees * kRadians), speed * std::cos(degrees * kRadians));
        };
        auto const [groundEast, groundNorth] = vector(state.groundSpeed, state.track);
        auto const [airEast, airNorth] = vector(state.trueAirspeed, state.trueHeading);
        auto const [windEast, windNorth] = vector(state.windSpeed, state.windDirection + 180.0);
        EXPECT_NEAR(groundEast, airEast + windEast, 1e-6);
        EXPECT_NEAR(groundNorth, airNorth + windNorth, 1e-6);
        auto const next = aircraft.at(second + 0.01);
        auto const step = sum(upAt(next.place), 1.0, upAt(state.place), -1.0);
        EXPECT_NEAR(lengthOf(step), state.groundSpeed * kRadiansPerKnot * 0.01, 1e-9);
        if (state.groundSpeed > 1.0) {
            EXPECT_NEAR(std::remainder(bearing(state.place, step) - state.track, 360.0), 0.0, 0.1);
        }
    });
}

TEST(SimulatedFlight, TurnsAtTheRateOfItsRoll) {
    constexpr double kGravity = 9.80665;
    bool turned = false;
    checkFlights([&](auto const& aircraft, double second) {
        auto const state = aircraft.at(second);
        auto const next = aircraft.at(second + 0.01);
        bool const isSteady = state.roll == next.roll && state.groundSpeed > 1.0;
        if (!isSteady || std::fabs(state.place.latitude) > 85) return; // north is elsewhere at once near a pole
        EXPECT_NEAR(std::remainder(next.track - state.track, 360.0) / 0.01, state.trackRate, 0.01);
        double const turn = std::remainder(next.trueHeading - state.trueHeading, 360.0) / 0.01;
        double const speed = state.trueAirspeed * 1852.0 / 3600.0;
        EXPECT_NEAR(turn, std::tan(state.roll * kRadians) * kGravity / speed / kRadians, 0.06);
        EXPECT_LE(std::fabs(state.roll), 30.0);
        turned = turned || state.roll != 0.0;
    });
    EXPECT_TRUE(turned);
}

TEST(SimulatedFlight, ClimbsAtItsRatesInTheAirThatIsThere) {
    checkFlights([](auto const& aircraft, double second) {
        auto const state = aircraft.at(second);
        auto const next = aircraft.at(second + 0.01);
        if (state.verticalRate == next.verticalRate) {
            EXPECT_NEAR((next.altitude - state.altitude) / 0.01 * 60, state.verticalRate, 0.01);
            EXPECT_NEAR((next.gnssHeight - state.gnssHeight) / 0.01 * 60, state.gnssVerticalRate, 0.01);
        }
        double const sound = 661.4788 * std::sqrt((state.temperature + 273.15) / 288.15);
        EXPECT_NEAR(state.mach * sound, state.trueAirspeed, 1e-6);
        EXPECT_NEAR(
            std::remainder(state.trueHeading - state.magneticHeading - aircraft.profile().weather.variation, 360.0),
            0.0, 1e-9);
    });
}

// Values of the tables of the standard atmosphere and of airspeed conversions.
TEST(StandardAir, IsThatOfTheTables) {
    EXPECT_NEAR(standardTemperature(0), 15.0, 0.01);
    EXPECT_NEAR(standardTemperature(10'000), -4.8, 0.05);
    EXPECT_NEAR(standardTemperature(40'000), -56.5, 0.01);
    EXPECT_NEAR(standardPressure(0), 1013.25, 0.01);
    EXPECT_NEAR(standardPressure(10'000), 696.8, 0.1);
    EXPECT_NEAR(standardPressure(36'089), 226.3, 0.1);
    EXPECT_NEAR(standardPressure(45'000), 147.5, 0.2);
    EXPECT_NEAR(trueAirspeedOf(0.8, standardTemperature(35'000)), 461.0, 0.5);
    EXPECT_NEAR(indicatedAirspeedOf(0.8, standardPressure(35'000)), 272.0, 1.0);
    EXPECT_NEAR(indicatedAirspeedOf(0.3, standardPressure(0)), 198.4, 0.1);
    for (double const knots : {150.0, 250.0, 320.0}) {
        EXPECT_NEAR(indicatedAirspeedOf(machOfIndicated(knots, 400.0), 400.0), knots, 1e-9);
    }
}

TEST(AltitudeCode, IsThatOfModeCInHundreds) {
    struct {
        double feet;
        std::uint64_t code; // C1 A1 C2 A2 C4 A4 M B1 Q B2 D2 B4 D4
    } const rows[] = {{-1000, 0b0010000000000}, {-600, 0b1010000000010}, {0, 0b0010000001010}, {100, 0b1010000001010},
        {30'700, 0b0100100000000}, {126'700, 0b0000100000100}};
    for (auto const& [feet, code] : rows) EXPECT_EQ(altitudeCode(feet, true), code) << feet;
    for (double const feet : {50'200.0, 60'000.0}) EXPECT_EQ(altitudeCode(feet, false), altitudeCode(feet, true));
}

TEST(MovementCode, HasTheStepsOfTheVersion) {
    struct {
        double knots;
        std::uint64_t early, later; // versions 0 and 1, version 2
    } const rows[] = {{0, 1, 1}, {0.1, 1, 2}, {0.2, 2, 3}, {0.25, 3, 3}, {0.99, 8, 8}, {1.0, 9, 8}, {1.1, 9, 9},
        {2.1, 13, 13}, {14.9, 38, 38}, {15.5, 39, 39}, {69.5, 93, 93}, {71, 94, 94}, {99, 108, 108}, {101, 109, 109},
        {174, 123, 123}, {176, 124, 124}, {500, 124, 124}};
    for (auto const& [knots, early, later] : rows) {
        EXPECT_EQ(movementCode(knots, 0), early) << knots;
        EXPECT_EQ(movementCode(knots, 2), later) << knots;
    }
}

TEST(PayloadWriter, CountsBitsFromOne) {
    EXPECT_EQ(PayloadWriter().code(1, 8, 0x20).bytes(), fromHex("20000000000000"));
    EXPECT_EQ(PayloadWriter().flag(56, true).bytes(), fromHex("00000000000001"));
    EXPECT_EQ(PayloadWriter().code(1, 4, 0x123).bytes(), fromHex("30000000000000"));
}

TEST(PayloadWriter, LeavesOutWhatIsNotThereOrOutOfRange) {
    EXPECT_EQ(PayloadWriter().steps(1, 8, std::nullopt, 1.0).bits(), 0U);
    EXPECT_EQ(PayloadWriter().steps(1, 8, 128.0, 1.0).bits(), 0U);
    EXPECT_EQ(PayloadWriter().steps(1, 8, 127.0, 1.0).bytes(), fromHex("FF000000000000"));
    EXPECT_EQ(PayloadWriter().signedSteps(1, 8, 64.0, 1.0).bits(), 0U);
    EXPECT_EQ(PayloadWriter().signedSteps(1, 8, -64.0, 1.0).bytes(), fromHex("C0000000000000"));
    EXPECT_EQ(PayloadWriter().stepsFromOne(1, 8, std::nullopt, 1.0).bits(), 0U);
    EXPECT_EQ(PayloadWriter().stepsFromOne(1, 8, 1000.0, 1.0).bytes(), fromHex("FF000000000000"));
    EXPECT_EQ(PayloadWriter().signedStepsFromOne(1, 8, -2.0, 1.0).bytes(), fromHex("83000000000000"));
}

TEST(Truth, HasTheNamesOfMessagesAndTheKindOfAddress) {
    Traffic const traffic{Settings()};
    std::set<std::string> kinds;
    for (auto const& aircraft : traffic.aircraft()) {
        TruthByName truth;
        visitTruth(truth, aircraft, aircraft.at(1));
        auto& texts = truth.texts;
        kinds.insert(texts["address_kind"]);
        EXPECT_EQ(texts["icao"].front() == '~', texts["address_kind"] != "icao");
        EXPECT_EQ(texts["squawk"].size(), 4U);
        EXPECT_EQ(texts["callsign"], aircraft.callsign());
        EXPECT_EQ(texts.count("version") != 0, aircraft.equipment() != Equipment::None);
        for (auto const* const name : {"latitude", "longitude", "altitude", "groundspeed", "track", "mach"}) {
            EXPECT_EQ(texts[name], "#") << name;
        }
    }
    EXPECT_TRUE(kinds.count("icao") != 0 && kinds.size() >= 2);
}

TEST(Traffic, OfAFewAircraftHasTheirUsualKinds) {
    Traffic traffic{Settings()};
    std::set<std::string> kinds; // format, and control field or type code
    while (auto const frame = traffic.next()) {
        auto const format = formatOf(*frame);
        auto kind = std::to_string(format);
        if (format == 18) kind += " " + std::to_string(static_cast<unsigned char>(frame->bytes[0]) & 7);
        kinds.insert(kind);
    }
    for (auto const* const kind : {"0", "4", "5", "11", "16", "17", "18 2", "18 3", "18 6", "20", "21"}) {
        EXPECT_EQ(kinds.count(kind), 1U) << kind;
    }
}

TEST(Traffic, TellsTheRegisterOfCommBRepliesAlone) {
    Settings settings;
    settings.seconds = 30;
    for (auto const& frame : framesOf(settings)) {
        EXPECT_EQ(frame.registerNumber != 0, formatOf(frame) == 20 || formatOf(frame) == 21);
    }
}

TEST(Traffic, IsTheSameForTheSameSeed) {
    Settings settings;
    settings.seconds = 5;
    settings.bitErrors = 0.1;
    auto const stream = streamOf(settings, Encoding::AvrStamped);
    EXPECT_EQ(stream, streamOf(settings, Encoding::AvrStamped));
    settings.seed = 2;
    EXPECT_NE(stream, streamOf(settings, Encoding::AvrStamped));
}

TEST(Traffic, ComesInTheOrderOfTimeWithinItsSpan) {
    Settings settings;
    settings.aircraft = 300;
    settings.seconds = 3;
    std::uint64_t last = 0;
    for (auto const& frame : framesOf(settings)) {
        EXPECT_GT(frame.nanoseconds, last);
        EXPECT_LT(frame.nanoseconds, 3'100'000'000U);
        EXPECT_LT(frame.aircraft, 300U);
        last = frame.nanoseconds;
    }
    EXPECT_GT(last, 2'900'000'000U);
}

TEST(Traffic, HasTheFormatsAndRatesOfRealTransponders) {
    Settings settings;
    settings.mix = Mix::Adsb;
    settings.aircraft = 200;
    settings.seconds = 60;
    std::map<unsigned, std::size_t> formats;
    std::map<unsigned, std::size_t> typeCodes;
    for (auto const& frame : framesOf(settings)) {
        ++formats[formatOf(frame)];
        if (formatOf(frame) != 17) continue;
        EXPECT_TRUE(isIntact(frame.bytes));
        ++typeCodes[static_cast<unsigned char>(frame.bytes[4]) >> 3];
    }
    for (unsigned const format : {0U, 4U, 5U, 11U, 16U, 17U, 20U, 21U}) EXPECT_GT(formats[format], 100U) << format;
    EXPECT_EQ(formats.size(), 8U);

    Traffic const traffic(settings);
    std::size_t equipped = 0;
    std::size_t newer = 0;
    for (auto const& aircraft : traffic.aircraft()) {
        equipped += aircraft.equipment() != Equipment::None ? 1U : 0U;
        newer += aircraft.equipment() == Equipment::Version1 || aircraft.equipment() == Equipment::Version2 ? 1U : 0U;
    }
    auto const near = [](std::size_t count, double expected) {
        return std::fabs(static_cast<double>(count) / expected - 1) < 0.1;
    };
    auto const sent = static_cast<double>(equipped) * 60;
    EXPECT_TRUE(near(typeCodes[19], sent * 2)) << typeCodes[19];
    EXPECT_TRUE(near(typeCodes[11] + typeCodes[7], sent * 2));
    EXPECT_TRUE(near(typeCodes[4], sent / 5));
    EXPECT_TRUE(near(typeCodes[31], static_cast<double>(newer) * 60 / 2.5));
    EXPECT_TRUE(near(typeCodes[29], static_cast<double>(newer) * 60 / 1.25));
    EXPECT_TRUE(near(typeCodes[28], static_cast<double>(newer) * 60 / 5));
}

TEST(Traffic, DamagesTheShareOfFramesThatIsAskedFor) {
    Settings settings;
    settings.aircraft = 100;
    settings.seconds = 20;
    for (auto const& frame : framesOf(settings)) EXPECT_FALSE(frame.damaged);
    settings.bitErrors = 0.2;
    std::size_t damaged = 0;
    std::size_t all = 0;
    for (auto const& frame : framesOf(settings)) {
        ++all;
        damaged += frame.damaged ? 1U : 0U;
        EXPECT_TRUE(formatOf(frame) != 17 || frame.damaged || isIntact(frame.bytes));
    }
    EXPECT_NEAR(static_cast<double>(damaged) / static_cast<double>(all), 0.2, 0.02);
}

TEST(Traffic, FliesAroundTheGivenPlaces) {
    Settings settings;
    settings.places = {{89.9, 0.0}, {0.0, 179.9}};
    settings.radius = 60;
    Traffic const traffic(settings);
    for (std::size_t i = 0; i < traffic.aircraft().size(); ++i) {
        auto const place = traffic.aircraft()[i].at(0).place;
        EXPECT_TRUE(i % 2 == 0 ? place.latitude > 88.8 : std::fabs(place.longitude) > 178.8) << i;
    }
}

TEST(Traffic, GivesEachAircraftAnAddressOfItsOwn) {
    Settings settings;
    settings.aircraft = 2000;
    Traffic const traffic(settings);
    std::set<std::uint32_t> addresses;
    for (auto const& aircraft : traffic.aircraft()) addresses.insert(aircraft.address());
    EXPECT_EQ(addresses.size(), 2000U);
    EXPECT_EQ(addresses.count(0), 0U);
}

TEST(StreamWriter, WritesEachEncoding) {
    Frame const frame{1'000'000'026, fromHex("5D1A00A2D46B1A"), 0, false};
    auto const written = [&](Encoding encoding) {
        std::string stream;
        appendFrame(stream, frame, encoding, 43'200ULL * 1'000'000'000);
        return stream;
    };
    EXPECT_EQ(written(Encoding::Avr), "*5D1A00A2D46B1A;\n");
    EXPECT_EQ(written(Encoding::AvrStamped), "@2A304000001A5D1A00A2D46B1A;\n");
    EXPECT_EQ(written(Encoding::BeastPlain), fromHex("1A32 2A304000001A C0 5D1A00A2D46B1A"));
    EXPECT_EQ(written(Encoding::Beast), fromHex("1A32 2A304000001A1A C0 5D1A1A00A2D46B1A1A"));
}

TEST(StreamWriter, BeginsTheDayAnewAtMidnight) {
    std::string stream;
    appendFrame(stream, {2'000'000'000, fromHex("1234"), 0, false}, Encoding::AvrStamped, 86'399ULL * 1'000'000'000);
    EXPECT_EQ(stream, "@0000400000001234;\n");
}

TEST(SampleRecording, IsWhatItsCommandMakes) {
    Settings settings;
    settings.aircraft = 25;
    settings.seconds = 60;
    settings.places = {{47.5, 9.5}};
    settings.radius = 120;
    settings.bitErrors = 0.02;
    settings.seed = 3;
    settings.mix = Mix::Adsb;
    std::ifstream file(std::string(TREVALLO_TEST_FOLDER) + "/../data/sample.beast", std::ios::binary);
    ASSERT_TRUE(file);
    std::string const recording{std::istreambuf_iterator<char>(file), {}};
    EXPECT_TRUE(recording == streamOf(settings, Encoding::Beast));
}
