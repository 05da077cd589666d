// SPDX-License-Identifier: MIT
#include "binding.h"

#include "host/beast_undoubler.h"
#include "host/counters.h"
#include "host/encoding.h"
#include "host/framer.h"
#include "host/host_error.h"
#include "host/stream_encoding.h"

#include <pybind11/numpy.h>

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

/// What one frame told, as far as it was believed.
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

data is all that a receiver sent, in one encoding: AVR text, a Beast stream, raw binary or hexadecimal lines. Without a
format that is found out from the first bytes. Inside Beast frames, most receivers send every byte 0x1A twice: doubled says
whether, None finds it out. Aircraft that were not heard for timeout seconds of the stream's time are forgotten.

A row shows what its frame reported and an aircraft was believed with. What it did not report is NaN, -1 (typeCode,
squawk), 0 (icaoAddress, trackId, signalAmplitude) or empty (callsign):

timeStamp       of reception, UTC; the receiver's where the stream has any, on the date of today
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
latitude        degrees, north positive; of airborne positions that make a pair with the one before
longitude       degrees, east positive
groundSpeed     knots
heading         track over ground, degrees clockwise from true north
verticalRate    barometric, feet per minute, positive climbing

Other threads of Python run meanwhile. Raises ValueError for a stream whose encoding cannot be found out, for the
format Unknown, and for a timeout that is no time.)~";

// The bits that say what a frame is, whether it can be decoded or not.
void putKind(FrameRow& row, std::string const& frame) {
    constexpr std::size_t kPayload = 4; // the first byte of it
    if (frame.size() == host::kModeAcFrameBytes) return;
    auto const format = DFMessage::downlinkFormatByCode(static_cast<unsigned char>(frame[0]) >> 3);
    row.downlinkFormat = static_cast<std::int8_t>(format);
    bool const isSquitter = format == DFMessage::DF17 || format == DFMessage::DF18;
    if (row.decoded && isSquitter) {
        row.typeCode = static_cast<std::int8_t>(static_cast<unsigned char>(frame[kPayload]) >> 3);
    }
}

// Items of the target count when they bear the time of the message: then they are from it.
class Reported {
public:
    Reported(FrameRow& row, ADSBTarget const& target, unsigned long long time)
        : _row(row), _target(target), _time(time) {}

    void altitude() {
        if (_target.altitudeBaroLastUpdate() == _time)
            _row.altitude = static_cast<float>(_target.altitudeBaro());
    }
    void squawk() {
        if (_target.squawkLastUpdate() == _time) _row.squawk = static_cast<std::int16_t>(_target.squawk());
    }
    void callsign() {
        if (_target.callsignLastUpdate() != _time) return;
        auto const text = _target.callsign();
        std::copy_n(text.begin(), std::min(text.size(), kCallsignCharacters), _row.callsign);
    }
    void position() {
        if (_target.positionLastUpdate() != _time) return;
        _row.latitude = _target.latitude();
        _row.longitude = _target.longitude();
    }
    void velocity() {
        if (_target.groundSpeedLastUpdate() == _time) _row.groundSpeed = _target.groundSpeed();
        if (_target.headingLastUpdate() == _time) _row.heading = _target.heading();
        if (_target.verticalRateBaroLastUpdate() == _time) {
            _row.verticalRate = static_cast<float>(_target.verticalRateBaro());
        }
    }

private:
    FrameRow& _row;
    ADSBTarget const& _target;
    unsigned long long _time;
};

void putReported(FrameRow& row, ADSBTarget const& target, unsigned long long time) {
    Reported reported(row, target, time);
    switch (row.downlinkFormat) {
    case DFMessage::DF0:
    case DFMessage::DF4:
    case DFMessage::DF16:
    case DFMessage::DF20: return reported.altitude();
    case DFMessage::DF5:
    case DFMessage::DF21: return reported.squawk();
    case DFMessage::DF17: break;
    default: return;
    }
    switch (ADSBMessage::typeByCode(static_cast<std::uint8_t>(row.typeCode))) {
    case ADSBMessage::ACID: return reported.callsign();
    case ADSBMessage::POS_AIR: reported.altitude(); return reported.position();
    case ADSBMessage::AIR_VEL: return reported.velocity();
    default: return;
    }
}

/// The road of a stream without Python: cut, decode, track, a row for each frame, and forget who is silent.
class StreamRoad {
public:
    StreamRoad(std::optional<host::Encoding> encoding, unsigned long long timeout)
        : _framer(encoding, _counters), _timeout(timeout) {}

    void take(std::string_view bytes) {
        _framer.feed(bytes, _frames);
        takeFrames();
    }

    void finish() {
        _framer.finish(_frames);
        takeFrames();
    }

    std::vector<FrameRow> takeRows() { return std::move(_rows); }

private:
    void takeFrames() {
        for (auto const& frame : _frames) _rows.push_back(take(frame));
        _frames.clear();
    }

    FrameRow take(host::Frame const& frame) {
        FrameRow row;
        row.timeStamp = static_cast<std::int64_t>(frame.record->timeStamp());
        row.signalAmplitude = frame.signal;
        auto const message = _decoder.decode(ModeSMessage::DOWNLINK, frame.record);
        row.decoded = message != nullptr;
        putKind(row, frame.record->data());
        if (!message) return row;
        row.icaoAddress = message->icaoAddress();
        row.confidence = static_cast<std::uint8_t>(message->confidence());
        message->setSignalAmplitude(frame.signal);
        auto const target = _tracker.procModeSMsg(message);
        row.tracked = target != nullptr;
        if (!target) return row;
        row.trackId = static_cast<std::uint16_t>(target->trackId());
        putReported(row, *target, message->timeStamp());
        forgetTheSilent(message->timeStamp());
        return row;
    }

    // Once a second of the stream's time. Receivers tell the time of day only: far back is another day, and
    // what is stamped far ahead is of the day before.
    void forgetTheSilent(unsigned long long time) {
        constexpr unsigned long long kHalfDay = 43'200'000;
        bool const isAnotherDay = time + kHalfDay < _now;
        if (time / 1000 <= _now / 1000 && !isAnotherDay) return;
        _now = time;
        if (_timeout < _now) _tracker.killTargets(_now - _timeout);
        for (auto const& target : _tracker.allTargetsSince(_now + kHalfDay)) {
            _tracker.killTarget(target->trackId(), target->icaoAddr());
        }
    }

    host::Counters _counters;
    host::Framer _framer;
    host::Frames _frames; // cut and not yet taken
    ModeSDecoder _decoder;
    ADSBTracker _tracker;
    unsigned long long _timeout; // ms, as the next
    unsigned long long _now = 0;
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
    py::capsule const owner(owned.get(),
                            [](void* vector) { delete static_cast<std::vector<FrameRow>*>(vector); });
    owned.release();
    return py::array(type, {count}, {static_cast<py::ssize_t>(sizeof(FrameRow))}, first, owner);
}

// Ctrl-C ends a long decoding.
void letSignalsThrough() {
    py::gil_scoped_acquire const lock;
    if (PyErr_CheckSignals() != 0) throw py::error_already_set();
}

host::Encoding beastAs(std::optional<bool> doubled, std::string_view stream) {
    bool const isDoubled = doubled ? *doubled : host::looksDoubled(stream.substr(0, host::kSampleBytes));
    return isDoubled ? host::Encoding::Beast : host::Encoding::BeastPlain;
}

// None when it is to be found out.
std::optional<host::Encoding> encodingOf(std::optional<ModeSEncapsulation::Format> format,
                                         std::optional<bool> doubled, std::string_view stream) {
    if (doubled && format != ModeSEncapsulation::Beast)
        throw py::value_error("only Beast streams are doubled");
    if (!format) return {};
    switch (*format) {
    case ModeSEncapsulation::Avr: return host::Encoding::Avr;
    case ModeSEncapsulation::Beast: return beastAs(doubled, stream);
    case ModeSEncapsulation::RawBin: return host::Encoding::Raw;
    case ModeSEncapsulation::RawHex: return host::Encoding::Hex;
    case ModeSEncapsulation::Unknown: break;
    }
    throw py::value_error("this format cannot be read");
}

unsigned long long timeoutInMs(double timeout) {
    constexpr double kLongest = 1e9; // s
    if (!(timeout > 0 && timeout <= kLongest))
        throw py::value_error("a timeout is a positive number of seconds");
    return static_cast<unsigned long long>(std::ceil(timeout * 1000));
}

py::array decodeStream(BytesView const& data, std::optional<ModeSEncapsulation::Format> format,
                       std::optional<bool> doubled, double timeout) {
    constexpr std::size_t kPiece = 64 * 1024;
    constexpr std::size_t kPiecesBetweenSignals = 256; // some 100 ms
    StreamRoad road(encodingOf(format, doubled, data.bytes()), timeoutInMs(timeout));
    try {
        py::gil_scoped_release const unlocked;
        std::size_t pieces = 0;
        for (auto rest = data.bytes(); !rest.empty(); rest.remove_prefix(std::min(kPiece, rest.size()))) {
            road.take(rest.substr(0, kPiece));
            if (++pieces % kPiecesBetweenSignals == 0) letSignalsThrough();
        }
        road.finish();
    } catch (host::UnknownEncoding const&) {
        throw py::value_error("the stream begins like no AVR text, Beast stream, raw binary or hexadecimal "
                              "lines: name its format");
    }
    return asArray(road.takeRows());
}

Bytes undouble(BytesView const& data) {
    Bytes plain;
    host::Counters ignored;
    host::BeastUndoubler().undouble(data.bytes(), plain.bytes, ignored);
    return plain;
}

} // namespace

void defineStream(py::module_& module) {
    module.def("decode_stream", &decodeStream, kDecodeStreamText, "data"_a, "format"_a = py::none(),
               py::kw_only(), "doubled"_a = py::none(), "timeout"_a = 600.0);
    module.def("undouble_beast", &undouble,
               "The frames of a Beast stream in which every 0x1A inside a frame is sent twice, without the "
               "doubling: "
               "what ModeSEncapsulation.extractBeast reads.",
               "data"_a);
}

} // namespace quorvel::modes::python
