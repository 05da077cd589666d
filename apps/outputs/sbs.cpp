// SPDX-License-Identifier: MIT
#include "outputs/sbs.h"

#include "outputs/output_text.h"

#include <modes/adsb_target_report.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>
#include <variant>

namespace quorvel::outputs {

namespace {

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

// The kind of a message by its type.
struct KindOf {
    Kind operator()(airspace::ShortAirAirReply const&) const { return kAirToAir; }
    Kind operator()(airspace::LongAirAirReply const&) const { return kAirToAir; }
    Kind operator()(airspace::AltitudeReply const&) const { return kSurveillanceAltitude; }
    Kind operator()(airspace::CommBAltitudeReply const&) const { return kSurveillanceAltitude; }
    Kind operator()(airspace::IdentityReply const&) const { return kSurveillanceIdentity; }
    Kind operator()(airspace::CommBIdentityReply const&) const { return kSurveillanceIdentity; }
    Kind operator()(airspace::AllCallReply const&) const { return kAllCall; }
    Kind operator()(airspace::ExtendedSquitter const& squitter) const { return std::visit(*this, squitter.content); }
    Kind operator()(airspace::Identification const&) const { return kIdentification; }
    Kind operator()(airspace::SurfacePosition const&) const { return kSurfacePosition; }
    Kind operator()(airspace::NoPosition const&) const { return kAirbornePosition; }
    Kind operator()(airspace::AirbornePosition const&) const { return kAirbornePosition; }
    Kind operator()(airspace::CoarsePosition const&) const { return kAirbornePosition; }
    Kind operator()(airspace::AirborneVelocity const&) const { return kAirborneVelocity; }
    Kind operator()(airspace::TisBVelocity const&) const { return kAirborneVelocity; }
    template <class Other> Kind operator()(Other const&) const { return kNone; }
};

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
        auto const rate = came(a.verticalRateBaro);
        std::array<std::string, 12> const fields{
            filled(came(a.callsign)),
            filled(came(a.altitudeBaro)),
            filled(came(a.groundSpeed)),
            filled(came(a.track)),
            position ? fixed(position->latitude, 5) : std::string(),
            position ? fixed(position->longitude, 5) : std::string(),
            filled(rate ? rate : came(a.verticalRateGnss)),
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
    auto const kind = std::visit(KindOf(), heard.reply.message);
    bool const hasPlace = heard.aircraft != nullptr && heard.aircraft->addressKind == airspace::AddressKind::Icao;
    if (kind == kNone || !hasPlace) return {}; // the format has no other addresses
    constexpr char session[] = "1";
    auto const track = std::to_string(std::max<int>(heard.aircraft->trackNumber, 1));
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
