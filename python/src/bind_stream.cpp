// SPDX-License-Identifier: MIT
#include "binding.h"

#include <pybind11/numpy.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

namespace quorvel::modes::python {

namespace {

constexpr float kNoFeet = std::numeric_limits<float>::quiet_NaN();
constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();
constexpr std::size_t kCallsignCharacters = 8;

/// What one frame reported, as far as it was believed.
struct FrameRow {
    std::int64_t timeStamp = 0;               // ms
    char32_t callsign[kCallsignCharacters]{}; // as numpy keeps text
    std::uint32_t icaoAddress = 0;
    float altitude = kNoFeet;
    float verticalRate = kNoFeet;
    double latitude = kNothing;
    double longitude = kNothing;
    double groundSpeed = kNothing;
    double heading = kNothing;
    std::uint16_t trackId = 0;
    std::int16_t squawk = -1;
    std::int8_t downlinkFormat = -1;
    std::int8_t typeCode = -1;
    std::uint8_t signalAmplitude = 0;
    std::uint8_t confidence = ModeSMessage::NONE;
    bool decoded = false;
    bool tracked = false;
};

struct Column {
    char const* name;
    char const* format; // numpy's
    std::size_t offset;
};
constexpr Column kColumns[] = {
    {"timeStamp", "M8[ms]", offsetof(FrameRow, timeStamp)},
    {"signalAmplitude", "u1", offsetof(FrameRow, signalAmplitude)},
    {"downlinkFormat", "i1", offsetof(FrameRow, downlinkFormat)},
    {"icaoAddress", "u4", offsetof(FrameRow, icaoAddress)},
    {"confidence", "u1", offsetof(FrameRow, confidence)},
    {"decoded", "?", offsetof(FrameRow, decoded)},
    {"tracked", "?", offsetof(FrameRow, tracked)},
    {"trackId", "u2", offsetof(FrameRow, trackId)},
    {"typeCode", "i1", offsetof(FrameRow, typeCode)},
    {"callsign", "U8", offsetof(FrameRow, callsign)},
    {"squawk", "i2", offsetof(FrameRow, squawk)},
    {"altitude", "f4", offsetof(FrameRow, altitude)},
    {"latitude", "f8", offsetof(FrameRow, latitude)},
    {"longitude", "f8", offsetof(FrameRow, longitude)},
    {"groundSpeed", "f8", offsetof(FrameRow, groundSpeed)},
    {"heading", "f8", offsetof(FrameRow, heading)},
    {"verticalRate", "f4", offsetof(FrameRow, verticalRate)},
};

constexpr char kDecodeStreamText[] =
    R"~(Decodes and tracks a whole stream: one row for each frame, in the order of the stream.

data is all that a receiver sent, in one encoding: AVR text, a Beast stream, raw binary or hexadecimal lines. A format
that is not given is detected from the first bytes. Most receivers send every byte 0x1A inside Beast frames twice:
doubled says whether they do; None detects it. Aircraft not heard for timeout seconds of the stream's time are dropped.

time says how the receiver's time stamps count: the time of day ("receiver"), ticks of 12 MHz since it was switched on
("12mhz"), or not at all: every frame has the host's time at this call ("arrival"); "auto" detects it. Time stamps do
not contain the date: date gives it, as an ISO text ("2024-05-01"), a datetime.date, or a datetime.datetime, at which a
counter starts (UTC unless it has a time zone). Without it, times are those of 1970-01-02, so that the same recording
always gives the same rows.

The aircraft are those that trevallo track shows: a reply that had to be repaired creates no aircraft, and a position
that no aircraft can have reached is not shown.

A row shows what its frame reported, if it was believed. What it did not report is NaN, -1 (typeCode, squawk), 0
(icaoAddress, trackId, signalAmplitude) or empty (callsign):

timeStamp       of reception, UTC
signalAmplitude as the receiver has measured it, where the encoding has it
downlinkFormat  0 to 24; -1 for a Mode A/C reply
icaoAddress     aircraft address, 24 bits
confidence      how far the address can be trusted, as ModeSMessage.Confidence
decoded         whether the frame could be decoded
tracked         whether it was believed and given to an aircraft
trackId         number of the track of that aircraft, 1 to 4095
typeCode        of the ADS-B message in an extended squitter, 0 to 31
callsign        as sent, blanks included
squawk          Mode A code as a number; oct() shows its four digits
altitude        barometric, feet
latitude        degrees, north positive; of airborne positions that make a pair with the one before and are plausible
longitude       degrees, east positive
groundSpeed     knots
heading         track over ground, degrees clockwise from true north
verticalRate    barometric, feet per minute, positive climbing

Other threads of Python run meanwhile. Raises ValueError for a stream whose encoding cannot be detected, for the
format Unknown, and for an invalid time, date or timeout.)~";

using airspace::Aircraft;
using airspace::Reply;

// What a frame of this time brought.
template <class T> std::optional<T> brought(airspace::Item<T> const& item, airspace::TimeMs time) {
    return item.updated == time ? item.value : std::nullopt;
}

void putAltitude(FrameRow& row, Aircraft const& aircraft, Reply const&) {
    if (auto const feet = brought(aircraft.altitudeBaro, aircraft.now)) row.altitude = static_cast<float>(*feet);
}

void putSquawk(FrameRow& row, Aircraft const& aircraft, Reply const&) {
    if (auto const squawk = brought(aircraft.squawk, aircraft.now))
        row.squawk = static_cast<std::int16_t>(squawk->code);
}

void putCallsign(FrameRow& row, Aircraft const& aircraft, Reply const&) {
    if (auto const text = brought(aircraft.callsign, aircraft.now))
        std::copy_n(text->begin(), std::min(text->size(), kCallsignCharacters), row.callsign);
}

void putPosition(FrameRow& row, Aircraft const& aircraft, Reply const& reply) {
    putAltitude(row, aircraft, reply);
    if (!reply.isPositionShown) return;
    row.latitude = aircraft.position.value->latitude;
    row.longitude = aircraft.position.value->longitude;
}

void putVelocity(FrameRow& row, Aircraft const& aircraft, Reply const&) {
    row.groundSpeed = brought(aircraft.groundSpeed, aircraft.now).value_or(kNothing);
    row.heading = brought(aircraft.heading, aircraft.now).value_or(kNothing);
    if (auto const feet = brought(aircraft.verticalRateBaro, aircraft.now))
        row.verticalRate = static_cast<float>(*feet);
}

// What puts the items into a row that a reply may have brought; nullptr when it brings none that rows have.
using Put = void (*)(FrameRow&, Aircraft const&, Reply const&);

Put putOf(Reply const& reply) {
    switch (*reply.format) {
    case DFMessage::DF0:
    case DFMessage::DF4:
    case DFMessage::DF16:
    case DFMessage::DF20: return putAltitude;
    case DFMessage::DF5:
    case DFMessage::DF21: return putSquawk;
    default: break;
    }
    switch (reply.type) {
    case ADSBMessage::ACID: return putCallsign;
    case ADSBMessage::POS_AIR: return putPosition;
    case ADSBMessage::AIR_VEL: return putVelocity;
    default: return nullptr;
    }
}

FrameRow rowOf(airspace::Frame const& frame, Reply const& reply) {
    FrameRow row;
    row.timeStamp = static_cast<std::int64_t>(frame.time);
    row.signalAmplitude = frame.signal;
    row.downlinkFormat = static_cast<std::int8_t>(reply.format ? *reply.format : -1);
    row.icaoAddress = reply.address;
    row.confidence = static_cast<std::uint8_t>(reply.confidence);
    row.decoded = reply.isDecoded;
    row.tracked = reply.track != 0;
    row.trackId = reply.track;
    row.typeCode = static_cast<std::int8_t>(reply.typeCode ? *reply.typeCode : -1);
    return row;
}

/// The road of a recording without Python: cut, date, decode, track, a row for each frame, and forget who is
/// silent.
class Recording {
public:
    Recording(airspace::StreamOptions const& options, airspace::TimeMs timeout, airspace::TimeMs arrival)
        : _stream(options), _arrival(arrival) {
        _sky.setTimeout(timeout);
    }

    /// False for a stream of unknown encoding, as `finish`.
    bool take(std::string_view bytes) { return taken(_stream.feed(bytes, _arrival, _frames)); }
    bool finish() { return taken(_stream.finish(_arrival, _frames)); }

    airspace::Stream const& stream() const { return _stream; }
    std::vector<FrameRow> takeRows() { return std::move(_rows); }

private:
    bool taken(bool isKnown) {
        if (_stream.timeReading() == airspace::TimeReading::Fixed) _sky.ignoreSpeeds();
        for (auto const& frame : _frames) take(frame);
        _frames.clear();
        return isKnown;
    }

    void take(airspace::Frame const& frame) {
        auto const reply = _sky.take(frame);
        auto& row = _rows.emplace_back(rowOf(frame, reply));
        if (auto const put = row.tracked ? putOf(reply) : nullptr)
            put(row, *_sky.find(reply.address, frame.time), reply);
        if (auto const second = frame.now / 1000; second != _second) {
            _second = second;
            _sky.dropSilent(frame.now);
        }
    }

    airspace::Stream _stream;
    airspace::TimeMs _arrival; // of all of it
    airspace::Sky _sky;
    airspace::Frames _frames;     // cut and not yet taken
    airspace::TimeMs _second = 0; // of the stream's time
    std::vector<FrameRow> _rows;
};

py::array asArray(std::vector<FrameRow>&& rows) {
    py::list names;
    py::list formats;
    py::list offsets;
    for (auto const& column : kColumns) {
        names.append(column.name);
        formats.append(column.format);
        offsets.append(column.offset);
    }
    py::dtype const type(names, formats, offsets, sizeof(FrameRow));
    auto owned = std::make_unique<std::vector<FrameRow>>(std::move(rows));
    auto const* const first = owned->data();
    auto const count = static_cast<py::ssize_t>(owned->size());
    py::capsule const owner(owned.get(), [](void* vector) { delete static_cast<std::vector<FrameRow>*>(vector); });
    owned.release();
    return py::array(type, {count}, {static_cast<py::ssize_t>(sizeof(FrameRow))}, first, owner);
}

// Ctrl-C ends a long decoding.
void letSignalsThrough() {
    py::gil_scoped_acquire const lock;
    if (PyErr_CheckSignals() != 0) throw py::error_already_set();
}

airspace::Encoding beastAs(std::optional<bool> doubled, std::string_view stream) {
    bool const isDoubled = doubled ? *doubled : airspace::looksDoubled(stream.substr(0, airspace::kSampleBytes));
    return isDoubled ? airspace::Encoding::Beast : airspace::Encoding::BeastPlain;
}

// None when it is to be detected.
std::optional<airspace::Encoding> encodingOf(
    std::optional<ModeSEncapsulation::Format> format, std::optional<bool> doubled, std::string_view stream) {
    if (doubled && format != ModeSEncapsulation::Beast) throw py::value_error("only Beast streams are doubled");
    if (!format) return {};
    switch (*format) {
    case ModeSEncapsulation::Avr: return airspace::Encoding::Avr;
    case ModeSEncapsulation::Beast: return beastAs(doubled, stream);
    case ModeSEncapsulation::RawBin: return airspace::Encoding::Raw;
    case ModeSEncapsulation::RawHex: return airspace::Encoding::Hex;
    case ModeSEncapsulation::Unknown: break;
    }
    throw py::value_error("this format cannot be read");
}

struct ReadingName {
    std::string_view name;
    airspace::TimeReading reading;
};
constexpr ReadingName kReadings[] = {
    {"auto", airspace::TimeReading::Auto},
    {"receiver", airspace::TimeReading::Receiver},
    {"12mhz", airspace::TimeReading::Counter12MHz},
    {"arrival", airspace::TimeReading::Arrival},
};

airspace::TimeReading readingOf(std::string_view name) {
    for (auto const& each : kReadings) {
        if (each.name == name) return each.reading;
    }
    throw py::value_error("a time is auto, receiver, 12mhz or arrival");
}

// A text is read as ISO 8601; what has no time zone is UTC. 0 for `None`.
airspace::TimeMs startOf(py::object date) {
    constexpr double kFirst = 86'400; // s: what has no date is of that day
    if (date.is_none()) return 0;
    auto const datetime = py::module_::import("datetime");
    auto const moment = datetime.attr("datetime");
    if (py::isinstance<py::str>(date)) date = moment.attr("fromisoformat")(date);
    if (!py::isinstance(date, datetime.attr("date")))
        throw py::type_error("a date is a text such as 2024-05-01, a datetime.date or a datetime.datetime");
    if (!py::isinstance(date, moment)) date = moment(date.attr("year"), date.attr("month"), date.attr("day"));
    if (date.attr("tzinfo").is_none()) date = date.attr("replace")("tzinfo"_a = datetime.attr("timezone").attr("utc"));
    auto const seconds = date.attr("timestamp")().cast<double>();
    if (seconds < kFirst) throw py::value_error("dates begin with 1970-01-02");
    return static_cast<airspace::TimeMs>(std::llround(seconds * 1000));
}

airspace::TimeMs timeoutInMs(double timeout) {
    constexpr double kLongest = 1e9; // s
    if (!(timeout > 0 && timeout <= kLongest)) throw py::value_error("a timeout is a positive number of seconds");
    return static_cast<airspace::TimeMs>(std::ceil(timeout * 1000));
}

airspace::TimeMs hostTime() {
    return py::module_::import("time").attr("time_ns")().cast<airspace::TimeMs>() / 1'000'000;
}

// False when its encoding cannot be detected.
bool readAll(std::string_view data, Recording& recording) {
    constexpr std::size_t kPiece = 64 * 1024;
    constexpr std::size_t kPiecesBetweenSignals = 256; // some 100 ms
    std::size_t pieces = 0;
    for (; !data.empty(); data.remove_prefix(std::min(kPiece, data.size()))) {
        if (!recording.take(data.substr(0, kPiece))) return false;
        if (++pieces % kPiecesBetweenSignals == 0) letSignalsThrough();
    }
    return recording.finish();
}

py::array decodeStream(BytesView const& data, std::optional<ModeSEncapsulation::Format> format,
    std::optional<bool> doubled, double timeout, std::string const& time, py::object const& date) {
    airspace::StreamOptions options;
    options.encoding = encodingOf(format, doubled, data.bytes());
    options.time = {readingOf(time), startOf(date)};
    Recording recording(options, timeoutInMs(timeout), hostTime());
    bool isKnown = false;
    {
        py::gil_scoped_release const unlocked;
        isKnown = readAll(data.bytes(), recording);
    }
    if (!isKnown) raiseUnknownEncoding(recording.stream());
    return asArray(recording.takeRows());
}

Bytes undouble(BytesView const& data) { return {airspace::undoubledBeast(data.bytes())}; }

} // namespace

void raiseUnknownEncoding(airspace::Stream const& stream) {
    std::string const other(stream.otherContent());
    throw py::value_error("the stream begins like no AVR text, Beast stream, raw binary or hexadecimal lines: " +
                          (other.empty() ? "name its format" : "it is " + other));
}

void defineStream(py::module_& module) {
    module.def("decode_stream", &decodeStream, kDecodeStreamText, "data"_a, "format"_a = py::none(), py::kw_only(),
        "doubled"_a = py::none(), "timeout"_a = 600.0, "time"_a = "auto", "date"_a = py::none());
    module.def("undouble_beast", &undouble,
        "The frames of a Beast stream in which every 0x1A inside a frame is sent twice, without the "
        "doubling: what ModeSEncapsulation.extractBeast reads.",
        "data"_a);
}

} // namespace quorvel::modes::python
