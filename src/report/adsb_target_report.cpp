// SPDX-License-Identifier: MIT
#include <modes/adsb_target_report.h>

#include "core/text.h"
#include "report/utc_text.h"

#include <cmath>

namespace quorvel::modes {

namespace {

// An unsigned whole number with at least `width` digits.
std::string digits(double number, std::size_t width) {
    auto text = fixedSix(number);
    text.resize(text.find('.'));
    return text.size() < width ? std::string(width - text.size(), '0') + text : text;
}

// Degrees, minutes, seconds and the hemisphere. Seconds are rounded without a carry into the minutes, and 0 degrees is
// in the southern and western hemisphere (both deliberate).
std::string sexagesimal(double coordinate, std::size_t degreeDigits, char positive, char negative) {
    if (!std::isfinite(coordinate)) return {};
    double const magnitude = std::fabs(coordinate);
    double const degrees = std::floor(magnitude);
    double const fraction = magnitude - degrees;
    double const minutes = std::floor(fraction * 60);
    double const seconds = std::fabs(std::round((fraction - minutes / 60) * 3600)); // no minus before a rounded 0
    return digits(degrees, degreeDigits) + digits(minutes, 2) + digits(seconds, 2) +
           (coordinate > 0 ? positive : negative);
}

} // namespace

void ADSBTargetReport::setPosition(double latitude, double longitude) {
    bool const isOnEarth = std::fabs(latitude) <= 90 && std::fabs(longitude) <= 180; // false for what is not a number
    _position.set({latitude, longitude}, isOnEarth);
}

std::string ADSBTargetReport::icaoAddressString() const {
    return icaoAddressValid() ? formatted("%6.2X", icaoAddress()) : std::string();
}

std::string ADSBTargetReport::squawkString() const { return formatted("%04o", squawk()); }

std::string ADSBTargetReport::latitudeString() const { return sexagesimal(latitude(), 2, 'N', 'S'); }

std::string ADSBTargetReport::longitudeString() const { return sexagesimal(longitude(), 3, 'E', 'W'); }

std::string ADSBTargetReport::positionString() const { return latitudeString() + longitudeString(); }

std::string ADSBTargetReport::boolToString(bool value) { return value ? "TRUE" : "FALSE"; }

std::string ADSBTargetReport::timeToString(unsigned long long time) {
    return time == 0 ? std::string() : utcText(time);
}

} // namespace quorvel::modes
