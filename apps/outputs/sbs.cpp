// SPDX-License-Identifier: MIT
#include "outputs/sbs.h"

#include "outputs/text.h"

#include <modes/adsb_message.h>
#include <modes/df_message.h>

#include <array>
#include <utility>

namespace quorvel::host {

namespace {

using modes::ADSBMessage;
using modes::DFMessage;
using Report = modes::ADSBTargetReport;

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

Kind kindOfPayload(std::string const& payload) {
    if (payload.empty()) return kNone;
    auto const typeCode = static_cast<std::uint8_t>(static_cast<unsigned char>(payload[0]) >> 3);
    switch (ADSBMessage::typeByCode(typeCode)) {
    case ADSBMessage::ACID: return kIdentification;
    case ADSBMessage::POS_GND: return kSurfacePosition;
    case ADSBMessage::POS_AIR: return kAirbornePosition;
    case ADSBMessage::AIR_VEL: return kAirborneVelocity;
    default: return kNone;
    }
}

Kind kindOf(modes::ModeSMessage const& message) {
    auto const* reply = dynamic_cast<DFMessage const*>(&message);
    if (reply == nullptr) return kNone;
    switch (reply->downlinkFormat()) {
    case DFMessage::DF0:
    case DFMessage::DF16: return kAirToAir;
    case DFMessage::DF4:
    case DFMessage::DF20: return kSurveillanceAltitude;
    case DFMessage::DF5:
    case DFMessage::DF21: return kSurveillanceIdentity;
    case DFMessage::DF11: return kAllCall;
    case DFMessage::DF17:
        return kindOfPayload(dynamic_cast<modes::DF17Message const&>(message).constFieldME().data());
    default: return kNone;
    }
}

// "2024-05-01T12:34:56.789Z" as the two fields of the format: "2024/05/01,12:34:56.789".
std::string dateAndTime(TimeMs time) {
    auto text = Report::timeToString(time);
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
std::string callsign(Report const& report) {
    auto text = printable(report.callsign());
    for (char& character : text) {
        if (character == ',') character = '?';
    }
    return text;
}

bool isEmergency(unsigned int squawk) { return squawk == 07500 || squawk == 07600 || squawk == 07700; }

char const* flag(bool value) { return value ? "-1" : "0"; }

// The fields from the callsign on, each filled if it came with the message of this time.
class Fields {
public:
    Fields(Report const& report, TimeMs time) : _report(report), _time(time) {}

    std::string text() const {
        auto const& r = _report;
        bool const squawk = came(r.squawkValid(), r.squawkLastUpdate());
        bool const position = came(r.positionValid(), r.positionLastUpdate());
        std::array<std::string, 12> const fields{
            filled(came(r.callsignValid(), r.callsignLastUpdate()), callsign(r)),
            filled(came(r.altitudeBaroValid(), r.altitudeBaroLastUpdate()), std::to_string(r.altitudeBaro())),
            filled(came(r.groundSpeedValid(), r.groundSpeedLastUpdate()), fixed(r.groundSpeed(), 1)),
            filled(came(r.headingValid(), r.headingLastUpdate()), fixed(r.heading(), 1)),
            filled(position, fixed(r.latitude(), 5)),
            filled(position, fixed(r.longitude(), 5)),
            filled(came(r.verticalRateBaroValid(), r.verticalRateBaroLastUpdate()),
                   std::to_string(r.verticalRateBaro())),
            filled(squawk, squawkText(r.squawk())),
            filled(came(r.alertStatusValid(), r.alertStatusLastUpdate()), flag(r.alertStatus())),
            filled(squawk, flag(isEmergency(r.squawk()))),
            filled(came(r.spiStatusValid(), r.spiStatusLastUpdate()), flag(r.spiStatus())),
            filled(came(r.groundStatusValid(), r.groundStatusLastUpdate()), flag(r.groundStatus())),
        };
        std::string text;
        for (auto const& field : fields) text += "," + field;
        return text;
    }

private:
    bool came(bool valid, TimeMs lastUpdate) const { return valid && lastUpdate == _time; }

    static std::string filled(bool is, std::string text) { return is ? std::move(text) : std::string(); }

    Report const& _report;
    TimeMs _time;
};

} // namespace

std::string sbsLine(modes::ModeSMessage const& message, Report const& report) {
    auto const kind = kindOf(message);
    if (kind == kNone) return {};
    constexpr char session[] = "1";
    auto const track = std::to_string(report.trackId());
    auto const time = message.timeStamp();
    auto const when = dateAndTime(time);
    return "MSG," + std::to_string(kind) + "," + session + "," + track + "," +
           addressText(report.icaoAddress()) + "," + track + "," + when + "," + when +
           Fields(report, time).text() + "\r\n";
}

Sbs::Sbs(std::unique_ptr<Sink> sink) : _sink(std::move(sink)) {}

void Sbs::heard(HeardFrame const& heard) {
    if (heard.message == nullptr || heard.aircraft == nullptr) return;
    auto const line = sbsLine(*heard.message, *heard.aircraft->report);
    if (!line.empty()) _sink->write(line);
}

void Sbs::flush() { _sink->flush(); }

} // namespace quorvel::host
