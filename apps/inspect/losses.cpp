// SPDX-License-Identifier: MIT
#include "inspect/losses.h"

#include <algorithm>
#include <iterator>

namespace quorvel::inspect {

namespace {

constexpr std::string_view kLosses[] = {
    "skipped_bytes", "overlong_lines", "bad_lines", "broken_frames", "status_frames"};

} // namespace

std::vector<airspace::CountText> lossesIn(airspace::Counts const& counters) {
    auto texts = listed(counters);
    std::erase_if(texts, [](airspace::CountText const& text) {
        return text.count == 0 || std::ranges::find(kLosses, text.name) == std::end(kLosses);
    });
    return texts;
}

std::string lossesText(std::string const& name, airspace::Counts const& counters) {
    std::string text;
    for (auto const& loss : lossesIn(counters)) {
        text += name + ": " + std::string(loss.help.substr(0, loss.help.rfind('.'))) + ": " +
                std::to_string(loss.count) + "\n";
    }
    return text;
}

} // namespace quorvel::inspect
