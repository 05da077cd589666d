// SPDX-License-Identifier: MIT
#include "inspect/standard_reading.h"

#include "inspect/field_names.h"
#include "inspect/library_values.h"
#include <airspace/message_fields.h>

#include <algorithm>
#include <limits>
#include <span>
#include <string_view>

namespace quorvel::inspect {

namespace {

using airspace::ExtendedSquitter;
using airspace::Message;

airspace::SkyOptions optionsOf(std::optional<airspace::Place> const& location) {
    airspace::SkyOptions options;
    options.positions.receiver = location;
    options.positions.rangeNm = std::numeric_limits<double>::infinity();
    return options;
}

std::string repaired(std::string bytes, airspace::Reply const& reply) {
    for (auto const bit : std::span(reply.repairedBits).first(reply.repairs)) {
        auto& byte = bytes[(bit - 1U) / 8];
        byte = static_cast<char>(static_cast<unsigned char>(byte) ^ 0x80U >> (bit - 1U) % 8);
    }
    return bytes;
}

std::string nameOf(ExtendedSquitter const& squitter) {
    if (std::holds_alternative<airspace::CoarsePosition>(squitter.content)) return "coarse position";
    if (std::holds_alternative<airspace::GroundStationManagement>(squitter.content)) return "service management";
    return squitter.typeCode ? std::string(airspace::nameOfTypeCode(*squitter.typeCode)) : "";
}

// The values of a reply without those of a register, which its bits alone do not tell.
struct AddWithoutRegister {
    NamedValues& values;

    template <class Reply> void operator()(Reply const& reply) const { airspace::visitFields(values, Message(reply)); }
    void operator()(airspace::CommBAltitudeReply const& reply) const {
        (*this)(airspace::AltitudeReply{reply, reply.altitude});
    }
    void operator()(airspace::CommBIdentityReply const& reply) const {
        (*this)(airspace::IdentityReply{reply, reply.squawk});
    }
};

void addValues(StandardReading& reading) {
    std::visit(AddWithoutRegister{reading.values}, reading.reply.message);
    auto const mb = airspace::registerBytes(reading.reply.message);
    if (mb.empty()) return;
    auto const& choice = reading.registerChoice =
        reading.reply.registerChoice ? *reading.reply.registerChoice : airspace::chooseRegister(mb, {});
    if (!choice->best) return;
    reading.values("bds", airspace::nameOf(*choice->best).text());
    airspace::visitFields(reading.values, airspace::readRegister(mb, *choice->best));
}

void addLibraryValues(StandardReading& reading) {
    for (auto const& [name, value] : reading.dissection.values) {
        auto const* standard = reading.values.find(name);
        if (!standard || isOther(value, *standard)) reading.libraryValues(name, value);
    }
    auto const& payload = reading.dissection.payload;
    reading.isUnreadByLibrary = payload && payload->readings.empty();
}

} // namespace

StandardReader::StandardReader(std::optional<unsigned> version, std::optional<airspace::Place> const& location)
    : _version(version), _sky(optionsOf(location)), _dissector(versionsOf(version)) {}

StandardReading StandardReader::read(std::string const& bytes, airspace::TimeMs time) {
    StandardReading reading;
    reading.dissection = _dissector.dissect(bytes, time);
    reading.received = reading.bytes = bytes;
    reading.formatName = reading.dissection.formatName;
    reading.format = reading.dissection.format;
    if (time == 0) _sky.ignoreSpeeds();
    _now = time != 0 ? time : _now + 1;
    auto& reply = reading.reply = _sky.take(airspace::Frame::of(bytes, _now));
    reading.problem = problemOf(bytes, reply);
    if (!reply.format) return reading;
    reading.bytes = repaired(bytes, reply).substr(0, airspace::modeSFrameBytes(bytes.front()));
    reading.parity = parityOf(reading.bytes, *reply.format, reply.overlay);
    reading.repairedBits.assign(reply.repairedBits.begin(), reply.repairedBits.begin() + reply.repairs);
    if (reply.isDecoded) reading.confidence = reply.confidence;
    if (reply.isDecoded && reply.address != 0) reading.address = reply.address;
    if (auto const* squitter = std::get_if<ExtendedSquitter>(&reply.message)) {
        reading.messageName = nameOf(*squitter);
        if (squitter->typeCode) reading.version = versionOf(reply);
        if (reading.version) reply.message = airspace::read(reading.bytes, {reading.version});
    }
    addValues(reading);
    addLibraryValues(reading);
    addPosition(reading);
    return reading;
}

std::optional<std::uint8_t> StandardReader::versionOf(airspace::Reply const& reply) const {
    if (_version) return _version;
    auto const aircraft = _sky.find(reply, _now);
    return aircraft && aircraft->mopsVersionConfirmed ? aircraft->mopsVersion.value : std::nullopt;
}

void StandardReader::addPosition(StandardReading& reading) const {
    auto const aircraft = reading.reply.isPositionShown ? _sky.find(reading.reply, _now) : std::nullopt;
    if (aircraft) reading.position = aircraft->position.value;
}

} // namespace quorvel::inspect
