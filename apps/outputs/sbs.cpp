// SPDX-License-Identifier: MIT
#include "outputs/sbs.h"

#include "outputs/output_text.h"

#include <modes/adsb_message.h>
#include <modes/df_message.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace quorvel::outputs {

namespace {

using modes::ADSBMessage;
using modes::DFMessage;

// The transmission types of the format.
enum Kind : int {
    kNone = 0,
    kIdentification = 1,
    kSurfacePosition = 2,
    kAirbornePosition = 3,
    kAirborneVelocity = 4,
    kSurveillanceAltitude = 5,
    kSurveillanceIdentity = 6,
    kAirToAir = 7,
    kAllCall = 8,
};

Kind kindOfSquitter(airspace::Reply const& reply) {
    switch (reply.type) {
    case ADSBMessage::ACID: return kIdentification;
    case ADSBMessage::POS_GND: return kSurfacePosition;
    case ADSBMessage::POS_AIR: return kAirbornePosition;
    case ADSBMessage::AIR_VEL: return kAirborneVelocity;
    default: return kNone;
    }
}

Kind kindOf(airspace::Reply const& reply) {
    switch (reply.format.value_or(DFMessage::DF24)) {
    case DFMessage::DF0:
    case DFMessage::DF16: return kAirToAir;
    case DFMessage::DF4:
    case DFMessage::DF20: return kSurveillanceAltitude;
    case DFMessage::DF5:
    case DFMessage::DF21: return kSurveillanceIdentity;
    case DFMessage::DF11: return kAllCall;
    case DFMessage::DF17: return kindOfSquitter(reply);
    default: return kNone;
    }
}

// "2024-05-01T12:34:56.789Z" as the two fields of the format: "2024/05/01,12:34:56.789".
std::string dateAndTime(airspace::TimeMs time) {
    auto text = modes::ADSBTargetReport::timeToString(time);
    if (text.empty()) return ",";
    auto const separator = text.find('T');
    for (char& character : text) {
        if (character == '-') character = '/';
    }
    text[separator] = ',';
    text.pop_back();
    return text;
}

// There is no way to quote a comma in this format.
std::string textOf(std::string const& callsign) {
    auto text = files::printable(callsign);
    std::ranges::replace(text, ',', '?');
    return text;
}

std::string textOf(bool value) { return value ? "-1" : "0"; }
std::string textOf(int value) { return std::to_string(value); }
std::string textOf(double value) { return fixed(value, 1); }

// The fields from the callsign on, each filled if it came with the message of this time.
class Fields {
public:
    Fields(airspace::Aircraft const& aircraft, airspace::TimeMs time) : _aircraft(aircraft), _time(time) {}

    std::string text() const {
        auto const& a = _aircraft;
        auto const squawk = came(a.squawk);
        auto const position = came(a.position);
        std::array<std::string, 12> const fields{
            filled(came(a.callsign)),
            filled(came(a.altitudeBaro)),
            filled(came(a.groundSpeed)),
            filled(came(a.heading)),
            position ? fixed(position->latitude, 5) : std::string(),
            position ? fixed(position->longitude, 5) : std::string(),
            filled(came(a.verticalRateBaro)),
            filled(squawk),
            filled(came(a.alertStatus)),
            squawk ? textOf(squawk->emergency() != airspace::Emergency::None) : std::string(),
            filled(came(a.spiStatus)),
            filled(came(a.groundStatus)),
        };
        std::string text;
        for (auto const& field : fields) text += "," + field;
        return text;
    }

private:
    template <class T> std::optional<T> came(airspace::Item<T> const& item) const {
        return item.updated == _time ? item.value : std::nullopt;
    }

    template <class T> static std::string filled(std::optional<T> const& value) {
        return value ? textOf(*value) : std::string();
    }

    airspace::Aircraft const& _aircraft;
    airspace::TimeMs _time;
};

} // namespace

std::string sbsLine(HeardFrame const& heard) {
    auto const kind = kindOf(heard.reply);
    if (kind == kNone || heard.aircraft == nullptr) return {};
    constexpr char session[] = "1";
    auto const track = std::to_string(heard.aircraft->track);
    auto const when = dateAndTime(heard.frame.time);
    return "MSG," + std::to_string(kind) + "," + session + "," + track + "," +
           airspace::addressText(heard.aircraft->address) + "," + track + "," + when + "," + when +
           Fields(*heard.aircraft, heard.frame.time).text() + "\r\n";
}

Sbs::Sbs(std::unique_ptr<Sink> sink) : _sink(std::move(sink)) {}

void Sbs::heard(HeardFrame const& heard) {
    auto const line = sbsLine(heard);
    if (!line.empty()) _sink->write(line);
}

void Sbs::flush() { _sink->flush(); }

} // namespace quorvel::outputs
