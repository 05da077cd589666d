// SPDX-License-Identifier: MIT
#include "outputs/summary.h"

#include "outputs/columns.h"
#include "terminal/console.h"

#include <algorithm>
#include <utility>

namespace quorvel::outputs {

namespace {

std::string labelled(airspace::CountText const& counter) {
    auto text = std::string(counter.help);
    if (counter.label.empty()) return text;
    return text.substr(0, text.size() - 1) + ": " + std::string(counter.label) + " " + std::string(counter.value) + ".";
}

} // namespace

std::string summaryLine(Picture const& picture) {
    auto const& counters = picture.counters;
    auto text = std::to_string(counters.frames) + " frames, " + std::to_string(counters.frames - counters.undecoded) +
                " decoded, " + std::to_string(counters.tracked) + " tracked, " +
                std::to_string(picture.aircraft.size()) + " aircraft";
    if (counters.modeAcFrames > 0) text += ", " + std::to_string(counters.modeAcFrames) + " Mode A/C replies";
    return text + "\n";
}

std::string allCounts(Counters const& counters) {
    auto texts = listed(counters);
    std::erase_if(texts, [](auto const& counter) { return counter.count == 0; });
    std::size_t width = 0;
    for (auto const& counter : texts) width = std::max(width, std::to_string(counter.count).size());
    std::string lines;
    for (auto const& counter : texts)
        lines += aligned(std::to_string(counter.count), width, false) + "  " + labelled(counter) + "\n";
    return lines;
}

Summary::Summary(std::unique_ptr<Sink> sink, bool isWhole) : _sink(std::move(sink)), _isWhole(isWhole) {}

void Summary::finish(Picture const& last) {
    _sink->write("\n" + summaryLine(last));
    if (_isWhole) _sink->write("\n" + allCounts(last.counters));
    _sink->flush();
}

void StderrSummary::finish(Picture const& last) {
    auto text = summaryLine(last) + allCounts(last.counters);
    text.pop_back(); // the line feed, which is added when it is written
    terminal::console::say(text);
}

} // namespace quorvel::outputs
