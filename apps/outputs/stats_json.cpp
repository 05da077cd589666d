// SPDX-License-Identifier: MIT
#include "outputs/stats_json.h"

#include <modes/adsb_target_report.h>

#include "files/replaced_file.h"
#include "outputs/output_text.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace quorvel::outputs {

namespace {

using Json = nlohmann::ordered_json;

Json countsOf(Counters const& counters) {
    Json counts = Json::object();
    for (auto const& count : listed(counters)) {
        auto& place = counts[std::string(count.name)];
        (count.label.empty() ? place : place[std::string(count.value)]) = count.count;
    }
    return counts;
}

Json timeText(airspace::TimeMs time) {
    return time == 0 ? Json(nullptr) : Json(modes::ADSBTargetReport::timeToString(time));
}

Json sourceOf(SourceState const& source) {
    return {{"name", validUtf8(source.name)}, {"state", validUtf8(source.state)}, {"timeKnown", source.timeKnown},
        {"now", timeText(source.now)}, {"lastFrame", timeText(source.lastFrame)},
        {"counters", countsOf(source.counters)}};
}

} // namespace

std::string statsJson(Picture const& picture) {
    Json object{{"formatVersion", kJsonFormatVersion}, {"now", timeText(picture.now)},
        {"aircraft", picture.aircraft.size()}, {"counters", countsOf(picture.counters)}, {"sources", Json::array()}};
    for (auto const& source : picture.sources) object["sources"].push_back(sourceOf(source));
    return object.dump() + "\n";
}

StatsJson::StatsJson(std::string file) : _file(std::move(file)) { files::makeFolderOf(_file); }

void StatsJson::picture(Picture const& picture) { files::writeMomentary(_file, statsJson(picture)); }

StatsLines::StatsLines(std::unique_ptr<Sink> sink) : _sink(std::move(sink)) {}

void StatsLines::picture(Picture const& picture) {
    _sink->write(statsJson(picture));
    _sink->flush();
}

} // namespace quorvel::outputs
