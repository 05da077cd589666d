// SPDX-License-Identifier: MIT
#include "adsb/position_fields.h"

namespace quorvel::modes {

namespace {

constexpr PayloadField kTime{ADSBMessageField::TMAP, 20, 1};
constexpr PayloadField kFormat{ADSBMessageField::CPRFMT, 21, 1};
constexpr PayloadField kLatitude{ADSBMessageField::CPRLAT, 22, 17};
constexpr PayloadField kLongitude{ADSBMessageField::CPRLON, 39, 17};

NameTable const kFormatNames{{"EVEN", "ODD"}, "--"}; // by the F bit

constexpr ListedField kFields[] = {
    {kTime, numberText},
    {kFormat, nameText<kFormatNames>},
    {kLatitude, numberText},
    {kLongitude, numberText},
};

} // namespace

PositionFields readPositionFields(Payload const& payload) {
    return {payload.flag(kTime), payload.flag(kFormat) ? 0U : 1U, payload.read(kLatitude), payload.read(kLongitude)};
}

void listPositionFields(ADSBMessage& message) { PayloadFields::list(message, kFields); }

std::string positionText(unsigned int cprFormat, unsigned int cprLatitude, unsigned int cprLongitude) {
    return ", CPR=" + kFormatNames[cprFormat != 0 ? 0 : 1] + ", LAT=" + std::to_string(cprLatitude) +
           ", LON=" + std::to_string(cprLongitude);
}

} // namespace quorvel::modes
