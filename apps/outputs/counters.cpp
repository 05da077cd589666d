// SPDX-License-Identifier: MIT
#include "outputs/counters.h"

namespace quorvel::outputs {

std::vector<airspace::CountText> listed(Counters const& counters) {
    auto texts = airspace::listed(counters);
    texts.push_back({"reconnections", "", "", "Connections to sources made again.", counters.reconnections});
    texts.push_back({"output_dropped", "", "",
        "Items that a reader of an output missed because it was too slow or not connected.", counters.outputDropped});
    return texts;
}

} // namespace quorvel::outputs
