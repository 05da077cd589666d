// SPDX-License-Identifier: MIT
#include "files/printable.h"
#include "inspect/aligned_table.h"
#include "inspect/bar_chart.h"
#include "inspect/field_names.h"
#include "inspect/recording_stats.h"
#include "outputs/output_text.h"

#include <modes/adsb_message.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>

namespace quorvel::inspect {

namespace {

using Json = nlohmann::ordered_json;
using Bars = std::vector<Bar>;

constexpr std::size_t kNameColumns = 12;
constexpr std::uint64_t kSignalBandWidth = 256 / RecordingStats::kSignalBands;
constexpr char const* kVersionTitles[] = {"version 0", "version 1", "version 2", "unknown"};
constexpr unsigned kVersionUnknown = 3;

std::string line(std::string const& name, std::string const& text) {
    return "  " + name + std::string(kNameColumns - std::min(kNameColumns, name.size()), ' ') + text + "\n";
}

std::string section(std::string const& title, std::string const& text) {
    return text.empty() ? "" : "\n  " + title + "\n" + text;
}

std::string padded(std::uint64_t number, std::size_t digits) {
    auto const text = std::to_string(number);
    return std::string(digits - std::min(digits, text.size()), '0') + text;
}

// ISO 8601, or the time of day alone where the day is not known.
std::string timeText(airspace::TimeMs time, bool isDated) {
    using namespace std::chrono;
    sys_time<milliseconds> const point{milliseconds(time)};
    auto const midnight = floor<days>(point);
    year_month_day const date(midnight);
    hh_mm_ss const ofDay(point - midnight);
    auto clock = padded(static_cast<std::uint64_t>(ofDay.hours().count()), 2) + ":" +
                 padded(static_cast<std::uint64_t>(ofDay.minutes().count()), 2) + ":" +
                 padded(static_cast<std::uint64_t>(ofDay.seconds().count()), 2) + "." +
                 padded(static_cast<std::uint64_t>(ofDay.subseconds().count()), 3);
    if (!isDated) return clock;
    return padded(static_cast<std::uint64_t>(static_cast<int>(date.year())), 4) + "-" +
           padded(static_cast<unsigned>(date.month()), 2) + "-" + padded(static_cast<unsigned>(date.day()), 2) + "T" +
           clock + "Z";
}

std::string secondsText(airspace::TimeMs length) { return outputs::fixed(outputs::seconds(length), 3) + " s"; }

std::string_view readingTitle(airspace::TimeReading reading) {
    switch (reading) {
    case airspace::TimeReading::Receiver: return "time of day of the receiver";
    case airspace::TimeReading::Counter12MHz: return "12 MHz counter of the receiver";
    default: return "no time stamps";
    }
}

double meanRate(RateHistory const& rates) {
    return rates.last() > rates.first() ? static_cast<double>(rates.frames()) / rates.seconds() : 0.0;
}

std::uint64_t wholeSeconds(RateHistory const& rates) { return rates.intervalWidth() / 1000; }

std::string timeLines(RecordingTitle const& title, RecordingStats const& stats, terminal::TerminalStyle const& style) {
    if (!stats.isTimed()) return line("Time", std::string(readingTitle(airspace::TimeReading::Fixed)));
    auto const& rates = stats.rates();
    auto text = line("Time", timeText(rates.first(), title.isDated) + " to " + timeText(rates.last(), title.isDated) +
                                 (title.isDated ? "" : " of an unknown day"));
    text += line("", std::string(readingTitle(title.reading)));
    text += line("Span", secondsText(rates.last() - rates.first()));
    text += line("Rate", outputs::fixed(meanRate(rates), 1) + " frames/s, " + std::to_string(rates.busiestSecond()) +
                             " in the busiest second");
    auto const width = std::to_string(wholeSeconds(rates)) + " s each";
    return text + line("", "[" + sparkline(rates.intervals(), style) + "] " + width);
}

Bars formatBars(airspace::Counts const& counters) {
    Bars bars;
    for (unsigned format = 0; format < counters.byFormat.size(); ++format) {
        auto const count = counters.byFormat[format];
        auto const title = std::string(titleOfFormat(std::min(format, 24U)));
        if (count > 0) bars.push_back({"DF" + std::to_string(format) + " " + title, count});
    }
    return bars;
}

// Names as in JSON, and texts.
struct NamedCount {
    std::string_view name;
    std::string_view title;
    std::uint64_t count;
};

std::vector<NamedCount> parityCounts(ParityCounts const& parity) {
    return {{"right", "right", parity.right}, {"repaired", "repaired", parity.repaired},
        {"wrong", "wrong", parity.wrong}, {"overlaid", "overlaid with the address", parity.overlaid},
        {"unknown", "of an unknown format", parity.unknown}};
}

std::vector<NamedCount> confidenceCounts(airspace::Counts const& counters) {
    auto const& counts = counters.byConfidence;
    return {{"high", "high", counts[3]}, {"medium", "medium", counts[2]}, {"low", "low", counts[1]},
        {"none", "none", counts[0]}, {"undecoded", "not decoded", counters.undecoded}};
}

Bars barsOf(std::vector<NamedCount> const& counts) {
    Bars bars;
    for (auto const& entry : counts) {
        if (entry.count > 0) bars.push_back({std::string(entry.title), entry.count});
    }
    return bars;
}

std::string typeTitle(unsigned typeCode) {
    using modes::ADSBMessage;
    return ADSBMessage::typeFullName(ADSBMessage::typeByCode(static_cast<std::uint8_t>(typeCode)));
}

Bars typeCodeBars(RecordingStats const& stats) {
    Bars bars;
    for (unsigned code = 0; code < stats.typeCodes().size(); ++code) {
        auto const number = (code < 10 ? " " : "") + std::to_string(code);
        if (stats.typeCodes()[code] > 0) bars.push_back({number + " " + typeTitle(code), stats.typeCodes()[code]});
    }
    return bars;
}

std::array<std::uint64_t, 4> versionCounts(RecordingStats const& stats) {
    std::array<std::uint64_t, 4> counts{};
    for (auto const& [address, tally] : stats.aircraft())
        ++counts[std::min(tally.version.value_or(kVersionUnknown), kVersionUnknown)];
    return counts;
}

Bars versionBars(RecordingStats const& stats) {
    Bars bars;
    auto const counts = versionCounts(stats);
    for (unsigned version = 0; version < counts.size(); ++version) {
        if (counts[version] > 0) bars.push_back({kVersionTitles[version], counts[version]});
    }
    return bars;
}

Bars signalBars(RecordingStats const& stats) {
    Bars bars;
    for (std::size_t band = 0; band < RecordingStats::kSignalBands; ++band) {
        auto const first = band * kSignalBandWidth;
        auto const label = padded(first, 3) + "-" + padded(first + kSignalBandWidth - 1, 3);
        bars.push_back({label, stats.signals()[band]});
    }
    auto const isSilent = [](Bar const& bar) { return bar.count == 0; };
    auto const last = std::find_if_not(bars.rbegin(), bars.rend(), isSilent).base();
    bars.erase(last, bars.end());
    bars.erase(bars.begin(), std::find_if_not(bars.begin(), bars.end(), isSilent));
    return bars;
}

using Tallies = std::vector<std::pair<std::string, AircraftTally>>;

Tallies mostReplies(RecordingStats const& stats) {
    Tallies tallies(stats.aircraft().begin(), stats.aircraft().end());
    std::stable_sort(tallies.begin(), tallies.end(),
        [](auto const& a, auto const& b) { return a.second.replies > b.second.replies; });
    return tallies;
}

std::string aircraftTableOf(RecordingStats const& stats, std::size_t most) {
    auto tallies = mostReplies(stats);
    auto const all = tallies.size();
    tallies.resize(std::min(all, most));
    std::vector<TableRow> rows;
    for (auto const& [address, tally] : tallies) {
        auto const callsign = files::printable(tally.callsign);
        rows.push_back({address, callsign.empty() ? "-" : callsign,
            tally.version ? std::to_string(*tally.version) : "-", std::to_string(tally.replies)});
    }
    if (rows.empty()) return "";
    auto const table = alignedTable({{"ICAO"}, {"Callsign"}, {"Version"}, {"Replies", Align::Right}}, rows, "    ");
    return table + (all > most ? "    and " + std::to_string(all - most) + " more\n" : "");
}

std::string gapTable(RecordingTitle const& title, RateHistory const& rates) {
    std::vector<TableRow> rows;
    for (auto const& gap : rates.gaps()) rows.push_back({timeText(gap.start, title.isDated), secondsText(gap.length)});
    if (rows.empty()) return "";
    auto const table = alignedTable({{"Start"}, {"Length", Align::Right}}, rows, "    ");
    auto const more = rates.gapCount() - rows.size();
    return table + (more > 0 ? "    and " + std::to_string(more) + " more\n" : "");
}

// Not listed again: these are shown as charts.
bool isShownElsewhere(airspace::CountText const& text) {
    return text.count == 0 || !text.label.empty() || text.name == "undecoded";
}

std::string counterTable(airspace::Counts const& counters) {
    std::size_t width = 0;
    for (auto const& text : listed(counters)) width = std::max(width, std::to_string(text.count).size());
    std::string table;
    for (auto const& text : listed(counters)) {
        if (isShownElsewhere(text)) continue;
        auto const count = std::to_string(text.count);
        table += "    " + std::string(width - count.size(), ' ') + count + "  " + std::string(text.help) + "\n";
    }
    return table;
}

Json timesJson(RecordingTitle const& title, RecordingStats const& stats) {
    auto const& rates = stats.rates();
    if (!stats.isTimed() || rates.frames() == 0) return nullptr;
    Json json{{"reading", title.reading == airspace::TimeReading::Receiver ? "receiver" : "12mhz"},
        {"dayKnown", title.isDated}, {"first", timeText(rates.first(), title.isDated)}, {"firstMs", rates.first()},
        {"last", timeText(rates.last(), title.isDated)}, {"lastMs", rates.last()}, {"seconds", rates.seconds()},
        {"meanRate", meanRate(rates)}, {"busiestSecond", rates.busiestSecond()},
        {"intervalSeconds", wholeSeconds(rates)}, {"framesByInterval", rates.intervals()},
        {"gapCount", rates.gapCount()}};
    json["gaps"] = Json::array();
    for (auto const& gap : rates.gaps()) {
        json["gaps"].push_back({{"start", timeText(gap.start, title.isDated)}, {"startMs", gap.start},
            {"seconds", outputs::seconds(gap.length)}});
    }
    return json;
}

Json jsonOf(std::vector<NamedCount> const& counts) {
    auto json = Json::object();
    for (auto const& entry : counts) json[std::string(entry.name)] = entry.count;
    return json;
}

template <class Counts> Json nonZero(Counts const& counts) {
    auto json = Json::object();
    for (std::size_t i = 0; i < counts.size(); ++i) {
        if (counts[i] > 0) json[std::to_string(i)] = counts[i];
    }
    return json;
}

Json aircraftJsonOf(RecordingStats const& stats) {
    auto json = Json::array();
    for (auto const& [address, tally] : mostReplies(stats)) {
        auto const callsign = files::printable(tally.callsign);
        json.push_back({{"icaoAddress", address}, {"callsign", callsign.empty() ? Json() : Json(callsign)},
            {"mopsVersion", tally.version ? Json(*tally.version) : Json()}, {"replies", tally.replies}});
    }
    return json;
}

Json countersJson(airspace::Counts const& counters) {
    auto json = Json::object();
    for (auto const& text : listed(counters)) {
        if (text.label.empty()) json[std::string(text.name)] = text.count;
    }
    return json;
}

} // namespace

std::string statsText(RecordingTitle const& title, RecordingStats const& stats, std::size_t aircraft,
    terminal::TerminalStyle const& style) {
    auto const& counters = stats.counters();
    auto text = title.name + "\n";
    text += line("Encoding", std::string(title.encoding ? nameOf(*title.encoding) : "none, it is empty"));
    text += line(
        "Frames", std::to_string(counters.frames) + " Mode S, " + std::to_string(counters.modeAcFrames) + " Mode A/C");
    text += line("Aircraft", std::to_string(stats.aircraft().size()));
    if (counters.frames + counters.modeAcFrames > 0) text += timeLines(title, stats, style);
    text += section("Formats", barChart(formatBars(counters), style));
    text += section("Parity", barChart(barsOf(parityCounts(stats.parity())), style));
    text += section("Confidence", barChart(barsOf(confidenceCounts(counters)), style));
    text += section("ADS-B messages by type code", barChart(typeCodeBars(stats), style));
    text += section("Aircraft by MOPS version", barChart(versionBars(stats), style));
    text += section("Signal levels", barChart(signalBars(stats), style));
    text += section("Aircraft with most replies", aircraftTableOf(stats, aircraft));
    text += section("Gaps of more than 10 s", gapTable(title, stats.rates()));
    return text + section("Counters", counterTable(counters));
}

std::string statsJson(RecordingTitle const& title, RecordingStats const& stats) {
    auto const& counters = stats.counters();
    Json json{{"formatVersion", outputs::kJsonFormatVersion}, {"name", title.name},
        {"encoding", title.encoding ? Json(airspace::identifierOf(*title.encoding)) : Json()},
        {"frames", counters.frames}, {"modeAcFrames", counters.modeAcFrames}, {"time", timesJson(title, stats)},
        {"formats", nonZero(counters.byFormat)}, {"parity", jsonOf(parityCounts(stats.parity()))},
        {"confidence", jsonOf(confidenceCounts(counters))}, {"typeCodes", nonZero(stats.typeCodes())},
        {"aircraftCount", stats.aircraft().size()}, {"aircraft", aircraftJsonOf(stats)},
        {"signalBands", stats.signals()}, {"counters", countersJson(counters)}};
    return json.dump(-1, ' ', true, Json::error_handler_t::replace) + "\n";
}

} // namespace quorvel::inspect
