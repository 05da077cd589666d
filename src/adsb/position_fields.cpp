// SPDX-License-Identifier: MIT
#include "adsb/position_fields.h"

#include "adsb/payload_fields.h"

namespace quorvel::modes {

namespace {

constexpr PayloadField kTime{ADSBMessageField::TMAP, 20, 1};
constexpr PayloadField kFormat{ADSBMessageField::CPRFMT, 21, 1};
constexpr PayloadField kLatitude{ADSBMessageField::CPRLAT, 22, 17};
constexpr PayloadField kLongitude{ADSBMessageField::CPRLON, 39, 17};

NameTable const kFormatNames{{"EVEN", "ODD"}, "--"}; // by the F bit

} // namespace

PositionFields readPositionFields(ADSBMessage& message) {
    PositionFields position{};
    position.timeApplicability = readFlag(message, kTime);
    position.cprFormat = readNamed(message, kFormat, kFormatNames) == 0 ? 1 : 0;
    position.cprLatitude = readNumber(message, kLatitude);
    position.cprLongitude = readNumber(message, kLongitude);
    return position;
}

std::string positionText(unsigned int cprFormat, unsigned int cprLatitude, unsigned int cprLongitude) {
    return ", CPR=" + kFormatNames[cprFormat != 0 ? 0 : 1] + ", LAT=" + std::to_string(cprLatitude) +
           ", LON=" + std::to_string(cprLongitude);
}

} // namespace quorvel::modes
