// SPDX-License-Identifier: MIT
#include "reading_value.h"
#include "recording.h"
#include "row_table.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace quorvel::modes::python {

namespace {

using airspace::Aircraft, airspace::Frame, airspace::Reply;

// One Mode S frame.
struct MessageRow {
    std::int64_t time = 0;
    std::uint32_t address = 0;
    std::uint8_t addressKind = 0;
    std::uint8_t format = 0;
    std::int8_t typeCode = -1;
    std::uint8_t registerNumber = 0;
    std::uint8_t confidence = 0;
    std::uint8_t repairs = 0;
    std::uint8_t signal = 0;
    bool isDecoded = false;
    bool isTracked = false;
};

constexpr Column kMessageColumns[] = {
    {"time", "M8[ms]", offsetof(MessageRow, time), "of reception, UTC"},
    {"address", "u4", offsetof(MessageRow, address), "24 bits; 0 when there is none, or the parity failed"},
    {"addressKind", "u1", offsetof(MessageRow, addressKind), "what the address is, as AddressKind; 0 with it"},
    {"format", "u1", offsetof(MessageRow, format), "downlink format, 0 to 24"},
    {"typeCode", "i1", offsetof(MessageRow, typeCode), "of extended squitters that carry one, 0 to 31; else -1"},
    {"register", "u1", offsetof(MessageRow, registerNumber),
        "that a Comm-B reply surely holds, as Register: 0x40 is 4,0; else 0"},
    {"confidence", "u1", offsetof(MessageRow, confidence),
        "how far the address can be trusted, as ModeSMessage.Confidence"},
    {"repairs", "u1", offsetof(MessageRow, repairs), "damaged bits that were repaired, 0 to 2"},
    {"signal", "u1", offsetof(MessageRow, signal), "level in the receiver's own unit; 0 where there is none"},
    {"isDecoded", "?", offsetof(MessageRow, isDecoded), "whether it can be believed at all"},
    {"isTracked", "?", offsetof(MessageRow, isTracked), "whether it was given to an aircraft"},
};

void fill(MessageRow& row, Frame const& frame, Reply const& reply) {
    row.time = static_cast<std::int64_t>(frame.time);
    row.address = reply.address;
    if (reply.address != 0) row.addressKind = static_cast<std::uint8_t>(headerOf(reply.message)->addressKind);
    row.format = *reply.format;
    row.typeCode = static_cast<std::int8_t>(reply.typeCode ? *reply.typeCode : -1);
    row.registerNumber = registerNumberOf(reply);
    row.confidence = static_cast<std::uint8_t>(reply.confidence);
    row.repairs = reply.repairs;
    row.signal = frame.signal;
    row.isDecoded = reply.isDecoded;
    row.isTracked = reply.isTracked;
}

// One position, with what its aircraft had reported shortly before.
struct PositionRow {
    std::int64_t time = 0;
    double latitude = kNothing;
    double longitude = kNothing;
    std::uint32_t address = 0;
    float altitudeBaro = kNothingShort;
    float altitudeGnss = kNothingShort;
    float groundSpeed = kNothingShort;
    float track = kNothingShort;
    float verticalRate = kNothingShort;
    float radius = kNothingShort;
    std::uint8_t addressKind = 0;
    std::int8_t nic = -1;
    std::int8_t isOnGround = -1;
    std::uint8_t source = 0;
};

constexpr Column kPositionColumns[] = {
    {"time", "M8[ms]", offsetof(PositionRow, time), "of reception, UTC"},
    {"address", "u4", offsetof(PositionRow, address), "24 bits"},
    {"addressKind", "u1", offsetof(PositionRow, addressKind), "what the address is, as AddressKind"},
    {"latitude", "f8", offsetof(PositionRow, latitude), "degrees, north positive"},
    {"longitude", "f8", offsetof(PositionRow, longitude), "degrees, east positive"},
    {"altitudeBaro", "f4", offsetof(PositionRow, altitudeBaro), "feet, of standard pressure"},
    {"altitudeGnss", "f4", offsetof(PositionRow, altitudeGnss), "feet, above the WGS-84 ellipsoid"},
    {"groundSpeed", "f4", offsetof(PositionRow, groundSpeed), "knots"},
    {"track", "f4", offsetof(PositionRow, track), "over ground, degrees clockwise from true north"},
    {"verticalRate", "f4", offsetof(PositionRow, verticalRate),
        "feet per minute, positive climbing; barometric, or by GNSS where that alone is reported"},
    {"isOnGround", "i1", offsetof(PositionRow, isOnGround), "1 on the ground, 0 in the air; -1 not known"},
    {"nic", "i1", offsetof(PositionRow, nic), "navigation integrity category, 0 to 11; -1 not known"},
    {"radius", "f4", offsetof(PositionRow, radius), "containment radius Rc, metres"},
    {"source", "u1", offsetof(PositionRow, source), "what brought the position, as Source"},
};
constexpr airspace::TimeMs kTogetherMs = 10'000; // what was reported before says nothing of this position

template <class T> bool isTogether(airspace::Item<T> const& item, Aircraft const& aircraft) {
    return item.value && aircraft.age(item.updated) <= kTogetherMs;
}

template <class Cell, class T> void put(Cell& cell, airspace::Item<T> const& item, Aircraft const& aircraft) {
    if (isTogether(item, aircraft)) cell = static_cast<Cell>(*item.value);
}

void fill(PositionRow& row, Aircraft const& aircraft) {
    row.time = static_cast<std::int64_t>(aircraft.position.updated);
    row.address = aircraft.address;
    row.addressKind = static_cast<std::uint8_t>(aircraft.addressKind);
    row.latitude = aircraft.position.value->latitude;
    row.longitude = aircraft.position.value->longitude;
    row.source = static_cast<std::uint8_t>(aircraft.position.source);
    put(row.altitudeBaro, aircraft.altitudeBaro, aircraft);
    put(row.altitudeGnss, aircraft.altitudeGnss, aircraft);
    put(row.groundSpeed, aircraft.groundSpeed, aircraft);
    put(row.track, aircraft.track, aircraft);
    auto const& barometric = aircraft.verticalRateBaro;
    put(row.verticalRate, isTogether(barometric, aircraft) ? barometric : aircraft.verticalRateGnss, aircraft);
    put(row.isOnGround, aircraft.groundStatus, aircraft);
    put(row.nic, aircraft.nic, aircraft);
    put(row.radius, aircraft.radius, aircraft);
}

std::optional<Aircraft> find(airspace::Sky const& sky, Reply const& reply, airspace::TimeMs time) {
    return sky.find(reply, time);
}
std::optional<Aircraft> find(airspace::CoreSky const& sky, Reply const& reply, airspace::TimeMs time) {
    return sky.find(reply.address, time);
}

class Arrays {
public:
    template <class AnySky> void add(Frame const& frame, Reply const& reply, AnySky const& sky) {
        if (reply.format) fill(_messages.add(), frame, reply);
        if (reply.isPositionShown) fill(_positions.add(), *find(sky, reply, frame.time));
    }

    py::dict result() {
        return py::dict("messages"_a = _messages.takeArray(kMessageColumns),
            "positions"_a = _positions.takeArray(kPositionColumns));
    }

private:
    RowTable<MessageRow> _messages;
    RowTable<PositionRow> _positions;
};

std::string toArraysText() {
    return std::string(R"~(Decodes and tracks a whole recording into a dictionary of two arrays, messages and positions,
each of which pandas.DataFrame takes as it is.

)~") + kRecordingText +
           R"~(
messages has a row for each Mode S frame, in the order of the recording:

)~" + columnsText(kMessageColumns) +
           R"~(
positions has a row for each position that passed the checks, with what else its aircraft reported within the 10 s before;
what it did not report is NaN or -1:

)~" + columnsText(kPositionColumns);
}

} // namespace

void defineArrays(py::module_& airspace) { defineReader<Arrays>(airspace, "to_arrays", toArraysText()); }

} // namespace quorvel::modes::python
