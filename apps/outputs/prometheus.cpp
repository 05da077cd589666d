// SPDX-License-Identifier: MIT
#include "outputs/prometheus.h"

#include "files/replaced_file.h"
#include "outputs/output_text.h"
#include "outputs/shown_aircraft.h"

#include <algorithm>
#include <utility>

namespace quorvel::outputs {

namespace {

std::string withEscapes(std::string const& text, std::string_view quote) {
    std::string result;
    for (char const character : validUtf8(text)) {
        if (character == '\n') {
            result += "\\n";
            continue;
        }
        if (character == '\\' || quote.find(character) != std::string_view::npos) result += '\\';
        result += character;
    }
    return result;
}

std::string label(std::string_view name, std::string const& value) {
    return "{" + std::string(name) + "=\"" + withEscapes(value, "\"") + "\"}";
}

// Families of samples one after the other; the samples of a family must be adjacent.
class Exposition {
public:
    void family(std::string_view name, std::string_view type, std::string_view help) {
        _name = "trevallo_" + std::string(name);
        _text += "# HELP " + _name + " " + withEscapes(std::string(help), "") + "\n";
        _text += "# TYPE " + _name + " " + std::string(type) + "\n";
    }

    void sample(std::string const& labels, std::string const& value) { _text += _name + labels + " " + value + "\n"; }

    std::string const& text() const { return _text; }

private:
    std::string _name;
    std::string _text;
};

void addCounters(Exposition& to, Counters const& counters) {
    std::string_view family;
    for (auto const& count : listed(counters)) {
        if (count.name != family) to.family(std::string(count.name) + "_total", "counter", count.help);
        family = count.name;
        to.sample(count.label.empty() ? "" : label(count.label, std::string(count.value)), std::to_string(count.count));
    }
}

void addTargets(Exposition& to, Picture const& picture) {
    auto const& all = picture.aircraft;
    to.family("targets", "gauge", "Targets in the table.");
    to.sample("", std::to_string(all.size()));
    to.family("targets_with_position", "gauge", "Targets with a position from the last minute.");
    to.sample("", std::to_string(std::count_if(all.begin(), all.end(), showsPosition)));
}

// Those that are not say that they are waiting or connecting, or have ended.
bool isUp(SourceState const& source) {
    auto const is = [&](std::string_view word) { return source.state.starts_with(word); };
    return !is("waiting") && !is("connecting") && !is("ended");
}

void addSources(Exposition& to, Picture const& picture, airspace::TimeMs hostTime) {
    to.family("source_up", "gauge", "Whether the source is being read.");
    for (auto const& source : picture.sources) to.sample(label("source", source.name), isUp(source) ? "1" : "0");
    to.family("source_seconds_behind", "gauge", "Time of the host less that of the source.");
    for (auto const& source : picture.sources) {
        if (!source.timeKnown || source.now == 0 || source.state == "ended") continue;
        auto const behind = source.now < hostTime ? hostTime - source.now : 0;
        to.sample(label("source", source.name), fixed(seconds(behind), 3));
    }
}

} // namespace

std::string prometheusText(Picture const& picture, airspace::TimeMs hostTime) {
    Exposition exposition;
    addCounters(exposition, picture.counters);
    addTargets(exposition, picture);
    addSources(exposition, picture, hostTime);
    return exposition.text();
}

PrometheusFile::PrometheusFile(std::string file, HostClock clock) : _file(std::move(file)), _clock(std::move(clock)) {
    files::makeFolderOf(_file);
}

void PrometheusFile::picture(Picture const& picture) {
    files::writeMomentary(_file, prometheusText(picture, _clock()));
}

} // namespace quorvel::outputs
