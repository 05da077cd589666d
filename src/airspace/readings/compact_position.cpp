// SPDX-License-Identifier: MIT
#include <airspace/compact_position.h>

#include <array>
#include <cmath>
#include <cstddef>

namespace quorvel::airspace {

namespace {

constexpr std::int64_t kScale = 1 << 17;
constexpr int kEvenZones = 60; // in latitude, all around

// Below the first latitude there are 59 zones, below each following one less.
constexpr std::array<double, 58> kZoneBorders{10.47047129997, 14.82817436869, 18.18626357071, 21.02939492603,
    23.54504486557, 25.82924707059, 27.93898710122, 29.91135685732, 31.77209707681, 33.53993436298, 35.22899597796,
    36.85025107594, 38.41241892412, 39.92256684334, 41.38651832260, 42.80914012244, 44.19454951419, 45.54626722660,
    46.86733252499, 48.16039128097, 49.42776439256, 50.67150165554, 51.89342469169, 53.09516152796, 54.27817472273,
    55.44378444495, 56.59318756206, 57.72747353866, 58.84763776148, 59.95459276694, 61.04917774246, 62.13216659210,
    63.20427479382, 64.26616522567, 65.31845309682, 66.36171008383, 67.39646774085, 68.42322022083, 69.44242631144,
    70.45451074988, 71.45986473029, 72.45884544729, 73.45177441668, 74.43893415725, 75.42056256653, 76.39684390794,
    77.36789461328, 78.33374082923, 79.29428225457, 80.24923213281, 81.19801349272, 82.13956980511, 83.07199444720,
    83.99173562981, 84.89166190702, 85.75541620944, 86.53536997512, 87.00000000000};

// For each whole degree, how many borders lie at or below it.
constexpr auto kBordersBelow = [] {
    std::array<std::uint8_t, 91> below{};
    for (std::size_t degree = 0; degree != below.size(); ++degree) {
        std::uint8_t count = 0;
        while (count < kZoneBorders.size() && kZoneBorders[count] <= static_cast<double>(degree)) ++count;
        below[degree] = count;
    }
    return below;
}();

double fraction(std::uint32_t number) { return static_cast<double>(number) / kScale; }

// What all zones together cover: the earth, or its quarter for surface positions.
double coveredDegrees(CompactPosition const& position) { return position.isOnSurface ? 90.0 : 360.0; }

int latitudeZones(CompactPosition const& position) { return kEvenZones - (position.isOdd ? 1 : 0); }

int longitudeZonesOf(CompactPosition const& position, double latitude) {
    auto const zones = longitudeZones(latitude) - (position.isOdd ? 1 : 0);
    return zones > 1 ? zones : 1;
}

// The zone out of `zones` that both numbers of a pair lie in.
int commonZone(std::int64_t difference, int zones) {
    auto const zone = (difference + kScale / 2) >> 17; // rounds down, also below 0
    return static_cast<int>((zone % zones + zones) % zones);
}

double positionInZones(double covered, int zones, int zone, std::uint32_t number) {
    return covered / zones * (zone + fraction(number));
}

double withinHalfTurn(double longitude) {
    if (longitude >= 180.0) return longitude - 360.0;
    if (longitude < -180.0) return longitude + 360.0;
    return longitude;
}

double nearest(double value, double period, double reference) {
    return value + period * std::round((reference - value) / period);
}

// A surface latitude is known but for multiples of 90 degrees.
double nearestLatitude(double latitude, double reference) {
    auto const found = nearest(latitude, 90.0, reference);
    if (found > 90.0) return found - 90.0;
    return found < -90.0 ? found + 90.0 : found;
}

bool isOnTheGlobe(Place const& place) {
    return std::abs(place.latitude) <= 90.0 && std::abs(place.longitude) <= 180.0; // false for what is not a number
}

struct Pair {
    CompactPosition const& even;
    CompactPosition const& odd;

    double latitudeOf(CompactPosition const& one) const {
        auto const difference = 59 * std::int64_t{even.latitude} - 60 * std::int64_t{odd.latitude};
        auto const zones = latitudeZones(one);
        return positionInZones(coveredDegrees(one), zones, commonZone(difference, zones), one.latitude);
    }

    double longitudeOf(CompactPosition const& one, double latitude) const {
        auto const all = std::int64_t{longitudeZones(latitude)};
        auto const difference = (all - 1) * even.longitude - all * odd.longitude;
        auto const zones = longitudeZonesOf(one, latitude);
        return positionInZones(coveredDegrees(one), zones, commonZone(difference, zones), one.longitude);
    }
};

std::optional<Place> globalAirborne(Pair const& pair, CompactPosition const& older, CompactPosition const& newer) {
    auto const signedLatitude = [&](CompactPosition const& one) {
        auto const latitude = pair.latitudeOf(one);
        return latitude >= 270.0 ? latitude - 360.0 : latitude;
    };
    auto const latitude = signedLatitude(newer);
    auto const olderLatitude = signedLatitude(older);
    if (latitude > 90.0 || olderLatitude > 90.0) return std::nullopt;
    if (longitudeZones(latitude) != longitudeZones(olderLatitude)) return std::nullopt;
    return Place{latitude, withinHalfTurn(pair.longitudeOf(newer, latitude))};
}

std::optional<Place> globalSurface(
    Pair const& pair, CompactPosition const& older, CompactPosition const& newer, Place const& reference) {
    auto const latitude = nearestLatitude(pair.latitudeOf(newer), reference.latitude);
    auto const olderLatitude = nearestLatitude(pair.latitudeOf(older), latitude);
    if (longitudeZones(latitude) != longitudeZones(olderLatitude)) return std::nullopt;
    auto const longitude = nearest(pair.longitudeOf(newer, latitude), 90.0, reference.longitude);
    return Place{latitude, withinHalfTurn(longitude)};
}

} // namespace

double pairWindowSeconds(bool isOnSurface, std::optional<double> groundSpeedKt) {
    if (!isOnSurface) return 10.0;
    return groundSpeedKt && *groundSpeedKt <= 25.0 ? 50.0 : 25.0;
}

int longitudeZones(double latitude) {
    auto const distance = std::abs(latitude);
    if (!(distance <= 87.0)) return 1;
    if (distance == 87.0) return 2;
    std::size_t borders = kBordersBelow[static_cast<std::size_t>(distance)];
    while (kZoneBorders[borders] <= distance) ++borders;
    return 59 - static_cast<int>(borders);
}

std::optional<Place> globalPosition(
    CompactPosition const& older, CompactPosition const& newer, std::optional<Place> const& reference) {
    if (older.isOdd == newer.isOdd || older.isOnSurface != newer.isOnSurface) return std::nullopt;
    Pair const pair{newer.isOdd ? older : newer, newer.isOdd ? newer : older};
    if (!newer.isOnSurface) return globalAirborne(pair, older, newer);
    if (!reference || !isOnTheGlobe(*reference)) return std::nullopt;
    return globalSurface(pair, older, newer, *reference);
}

std::optional<Place> localPosition(CompactPosition const& position, Place const& reference) {
    if (!isOnTheGlobe(reference)) return std::nullopt;
    auto const covered = coveredDegrees(position);
    auto const nearestInZone = [covered](int zones, std::uint32_t number, double to) {
        auto const zone = std::floor(0.5 + to * zones / covered - fraction(number));
        return positionInZones(covered, zones, static_cast<int>(zone), number);
    };
    auto const latitude = nearestInZone(latitudeZones(position), position.latitude, reference.latitude);
    if (std::abs(latitude) > 90.0) return std::nullopt;
    auto const zones = longitudeZonesOf(position, latitude);
    return Place{latitude, withinHalfTurn(nearestInZone(zones, position.longitude, reference.longitude))};
}

} // namespace quorvel::airspace
