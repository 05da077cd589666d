// SPDX-License-Identifier: MIT
#include "frame_row.h"
#include "reading_value.h"
#include "recording.h"

#include <string>

namespace quorvel::modes::python {

namespace {

// A row for each frame.
class FrameRows {
public:
    template <class AnySky> void add(airspace::Frame const& frame, airspace::Reply const& reply, AnySky const& sky) {
        auto& row = _rows.add();
        row.timeStamp = static_cast<std::int64_t>(frame.time);
        row.signalAmplitude = frame.signal;
        row.downlinkFormat = static_cast<std::int8_t>(reply.format ? *reply.format : -1);
        row.icaoAddress = reply.address;
        row.confidence = static_cast<std::uint8_t>(reply.confidence);
        row.decoded = reply.isDecoded;
        row.tracked = reply.isTracked;
        row.typeCode = static_cast<std::int8_t>(reply.typeCode ? *reply.typeCode : -1);
        row.registerNumber = registerNumberOf(reply);
        if (reply.isTracked) putValues(row, reply, sky, frame.time);
    }

    py::array result() { return _rows.takeArray(kFrameColumns); }

private:
    RowTable<FrameRow> _rows;
};

std::string decodeStreamText() {
    return std::string(R"~(Decodes and tracks a whole recording: one row for each frame, in the order of the recording.

)~") + kRecordingText +
           R"~(
A row shows what its frame reported, if it was given to an aircraft. What it did not report is NaN, -1 (typeCode, squawk,
isOnGround), 0 (icaoAddress, register, signalAmplitude) or empty (callsign):

)~" + columnsText(kFrameColumns);
}

Bytes undouble(BytesView const& data) { return {airspace::undoubledBeast(data.bytes())}; }

} // namespace

void defineStream(py::module_& module) {
    defineReader<FrameRows>(module, "decode_stream", decodeStreamText());
    module.def("undouble_beast", &undouble,
        "The frames of a Beast stream in which every 0x1A inside a frame is sent twice, without the "
        "doubling: what ModeSEncapsulation.extractBeast reads.",
        "data"_a);
}

} // namespace quorvel::modes::python
