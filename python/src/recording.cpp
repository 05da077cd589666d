// SPDX-License-Identifier: MIT
#include "recording.h"

#include <cmath>
#include <utility>

namespace quorvel::modes::python {

namespace {

using airspace::TimeMs, airspace::TimeReading;

airspace::Encoding beastAs(std::optional<bool> doubled, std::string_view beginning) {
    bool const isDoubled = doubled ? *doubled : airspace::looksDoubled(beginning.substr(0, airspace::kSampleBytes));
    return isDoubled ? airspace::Encoding::Beast : airspace::Encoding::BeastPlain;
}

void check(std::optional<ModeSEncapsulation::Format> format, std::optional<bool> doubled) {
    if (doubled && format != ModeSEncapsulation::Beast) throw py::value_error("only Beast streams are doubled");
    if (format == ModeSEncapsulation::Unknown) throw py::value_error("this format cannot be read");
}

// The value of a name; raises `ValueError`, which says what there is, for any other.
template <class Value, std::size_t Count>
Value named(std::string const& name, std::pair<char const*, Value> const (&values)[Count], char const* known) {
    for (auto const& [each, value] : values) {
        if (name == each) return value;
    }
    throw py::value_error(known);
}

TimeReading readingOf(std::string const& name) {
    static constexpr std::pair<char const*, TimeReading> readings[] = {
        {"auto", TimeReading::Auto},
        {"receiver", TimeReading::Receiver},
        {"12mhz", TimeReading::Counter12MHz},
        {"arrival", TimeReading::Arrival},
    };
    return named(name, readings, "a time is auto, receiver, 12mhz or arrival");
}

bool isByStandards(std::string const& name) {
    static constexpr std::pair<char const*, bool> values[] = {{"standard", true}, {"library", false}};
    return named(name, values, "values are standard or library");
}

// A text is read as ISO 8601; what has no time zone is UTC. 0 for `None`.
TimeMs startOf(py::object date) {
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
    return static_cast<TimeMs>(std::llround(seconds * 1000));
}

TimeMs timeoutInMs(double timeout) {
    constexpr double kLongest = 1e9; // s
    if (!(timeout > 0 && timeout <= kLongest)) throw py::value_error("a timeout is a positive number of seconds");
    return static_cast<TimeMs>(std::ceil(timeout * 1000));
}

TimeMs hostTime() { return py::module_::import("time").attr("time_ns")().cast<TimeMs>() / 1'000'000; }

} // namespace

char const kRecordingText[] =
    R"~(data is all that a receiver sent, in one encoding: AVR text, a Beast stream, raw binary or hexadecimal lines. It is
bytes, or the path of a file, which may be compressed (gzip, zstd). A format that is not given is detected from the first
bytes. Most receivers send every byte 0x1A inside Beast frames twice: doubled says whether they do; None detects it.
Aircraft not heard for timeout seconds of the stream's time are dropped.

time says how the receiver's time stamps count: the time of day ("receiver"), ticks of 12 MHz since it was switched on
("12mhz"), or not at all: every frame has the host's time at this call ("arrival"); "auto" detects it. Time stamps do
not contain the date: date gives it, as an ISO text ("2024-05-01"), a datetime.date, or a datetime.datetime, at which a
counter starts (UTC unless it has a time zone). Without it, times are those of 1970-01-02, so that the same recording
always gives the same rows.

values says who reads the messages: "standard" reads them by the standards, as airspace.Sky does, "library" as the core
library does, as airspace.CoreSky: it reads less, and differs from the standards where it does so on purpose.

The aircraft are those that trevallo track shows: a reply that had to be repaired creates no aircraft, and a position
that no aircraft can have reached is not shown.

Other threads of Python run meanwhile. Raises ValueError for a stream whose encoding cannot be detected, for the format
Unknown, and for an invalid time, date, timeout or values, and OSError for a file that cannot be read. Compressed data that
is damaged or cut short is a UserWarning; what comes before is read.
)~";

RecordingOptions::RecordingOptions(RecordingArguments const& arguments)
    : format(arguments.format)
    , doubled(arguments.doubled)
    , timeout(timeoutInMs(arguments.timeout))
    , time{readingOf(arguments.time), startOf(arguments.date)}
    , arrival(hostTime())
    , isByStandards(python::isByStandards(arguments.values)) {
    check(format, doubled);
}

airspace::StreamOptions RecordingOptions::streamOptions(std::string_view beginning) const {
    airspace::StreamOptions options;
    options.time = time;
    if (!format) return options;
    switch (*format) {
    case ModeSEncapsulation::Avr: options.encoding = airspace::Encoding::Avr; break;
    case ModeSEncapsulation::Beast: options.encoding = beastAs(doubled, beginning); break;
    case ModeSEncapsulation::RawBin: options.encoding = airspace::Encoding::Raw; break;
    case ModeSEncapsulation::RawHex: options.encoding = airspace::Encoding::Hex; break;
    case ModeSEncapsulation::Unknown: break;
    }
    return options;
}

void letSignalsThrough() {
    py::gil_scoped_acquire const lock;
    if (PyErr_CheckSignals() != 0) throw py::error_already_set();
}

void raiseUnknownEncoding(airspace::Stream const& stream) {
    std::string const other(stream.otherContent());
    throw py::value_error("the stream begins like no AVR text, Beast stream, raw binary or hexadecimal lines: " +
                          (other.empty() ? "name its format" : "it is " + other));
}

} // namespace quorvel::modes::python
