// SPDX-License-Identifier: MIT
#pragma once

#include "binding.h"
#include "recording_input.h"

#include <airspace/core_sky.h>
#include <airspace/sky.h>
#include <airspace/stream.h>

#include <optional>
#include <string>

namespace quorvel::modes::python {

/// What a call says of a recording, as Python says it.
struct RecordingArguments {
    py::object data;
    std::optional<ModeSEncapsulation::Format> format;
    std::optional<bool> doubled;
    double timeout;
    std::string time;
    py::object date;
    std::string values;
};

/// The same, checked; what is wrong with it raises `ValueError` or `TypeError`.
struct RecordingOptions {
    explicit RecordingOptions(RecordingArguments const& arguments);

    /// Of the stream, once its first bytes are known. Needs no lock of the interpreter.
    airspace::StreamOptions streamOptions(std::string_view beginning) const;

    std::optional<ModeSEncapsulation::Format> format;
    std::optional<bool> doubled;
    airspace::TimeMs timeout;
    airspace::TimeOptions time;
    airspace::TimeMs arrival; ///< of all of it
    bool isByStandards;
};

/// What these arguments are, for the documentation.
extern char const kRecordingText[];

/// Ctrl-C ends a long decoding.
void letSignalsThrough();

/// The way of a recording without Python: cut, date, decode, track, a row for each frame, and forget who is silent.
template <class AnySky, class Rows> class Recording {
public:
    Recording(airspace::StreamOptions const& stream, RecordingOptions const& options, Rows& rows)
        : _stream(stream), _arrival(options.arrival), _rows(rows) {
        _sky.setTimeout(options.timeout);
    }

    void take(std::string_view bytes) { taken(_stream.feed(bytes, _arrival, _frames)); }
    void finish() { taken(_stream.finish(_arrival, _frames)); }

private:
    void taken(bool isKnown) {
        if (_stream.timeReading() == airspace::TimeReading::Fixed) _sky.ignoreSpeeds();
        for (auto const& frame : _frames) take(frame);
        _frames.clear();
        if (!isKnown) raiseUnknownEncoding(_stream);
    }

    void take(airspace::Frame const& frame) {
        _rows.add(frame, _sky.take(frame), _sky);
        if (auto const second = frame.now / 1000; second != _second) {
            _second = second;
            _sky.dropSilent(frame.now);
        }
    }

    airspace::Stream _stream;
    airspace::TimeMs _arrival;
    AnySky _sky;
    Rows& _rows;
    airspace::Frames _frames;     // cut and not yet taken
    airspace::TimeMs _second = 0; // of the stream's time
};

template <class AnySky, class Rows>
void readRecording(RecordingInput& input, RecordingOptions const& options, Rows& rows) {
    constexpr std::size_t piecesBetweenSignals = 256; // some 100 ms
    auto piece = input.next();
    Recording<AnySky, Rows> recording(options.streamOptions(piece), options, rows);
    for (std::size_t pieces = 1; !piece.empty(); piece = input.next(), ++pieces) {
        recording.take(piece);
        if (pieces % piecesBetweenSignals == 0) letSignalsThrough();
    }
    recording.finish();
}

/// The rows of a recording; other threads of Python run meanwhile.
template <class Rows> Rows rowsOf(RecordingArguments const& arguments) {
    RecordingOptions const options(arguments);
    auto const input = openInput(arguments.data);
    Rows rows;
    {
        py::gil_scoped_release const unlocked;
        if (options.isByStandards)
            readRecording<airspace::Sky>(*input, options, rows);
        else
            readRecording<airspace::CoreSky>(*input, options, rows);
    }
    input->warn();
    return rows;
}

/// Defines a function of a recording, which returns what `Rows::result` makes of its rows.
template <class Rows> void defineReader(py::module_& module, char const* name, std::string const& text) {
    module.def(
        name,
        [](py::object const& data, std::optional<ModeSEncapsulation::Format> format, std::optional<bool> doubled,
            double timeout, std::string const& time, py::object const& date, std::string const& values) {
            return rowsOf<Rows>({data, format, doubled, timeout, time, date, values}).result();
        },
        text.c_str(), "data"_a, "format"_a = py::none(), py::kw_only(), "doubled"_a = py::none(), "timeout"_a = 600.0,
        "time"_a = "auto", "date"_a = py::none(), "values"_a = "standard");
}

} // namespace quorvel::modes::python
