// SPDX-License-Identifier: MIT
#include "inspect/losses.h"

#include <algorithm>
#include <iterator>

namespace quorvel::host {

namespace {

constexpr std::string_view kLosses[] = {"skipped_bytes", "overlong_lines", "bad_lines", "broken_frames",
                                        "status_frames"};

} // namespace

std::vector<CounterText> lossesIn(Counters const& counters) {
    auto texts = listed(counters);
    std::erase_if(texts, [](CounterText const& text) {
        return text.count == 0 || std::ranges::find(kLosses, text.name) == std::end(kLosses);
    });
    return texts;
}

std::string lossesText(std::string const& name, Counters const& counters) {
    std::string text;
    for (auto const& loss : lossesIn(counters)) {
        text += name + ": " + std::string(loss.help.substr(0, loss.help.rfind('.'))) + ": " +
                std::to_string(loss.count) + "\n";
    }
    return text;
}

} // namespace quorvel::host
