// SPDX-License-Identifier: MIT
#include "inspect/reading_lines.h"

#include "inspect/frame_text.h"
#include "inspect/json_members.h"
#include <airspace/message_fields.h>

#include <cmath>

namespace quorvel::inspect {

namespace {

constexpr double kMsPerSecond = 1000.0;

double toThousandths(double value) { return std::round(value * 1000.0) / 1000.0; }

void writeChoice(JsonMembers& members, airspace::RegisterChoice const& choice) {
    if (!choice.best) return;
    members("bds_choice", airspace::nameOf(*choice.best).text());
    members("bds_score", toThousandths(choice.score));
    members("bds_sure", !choice.isUnsure);
}

} // namespace

void ReadingLines::append(airspace::Frame const& frame, std::string& out) {
    if (frame.isModeAc()) return;
    auto const message = airspace::read(frame);
    auto const seconds = static_cast<double>(frame.time) / kMsPerSecond;
    JsonMembers members(out);
    members("i", _frames++);
    members("hex", hexText(frame.view()));
    airspace::visitFields(members, message);
    if (auto const mb = airspace::registerBytes(message); !mb.empty()) {
        auto const known = _states.at(airspace::headerOf(message)->address, seconds);
        writeChoice(members, airspace::chooseRegister(mb, known));
    }
    members.finish();
    _states.take(message, seconds);
}

} // namespace quorvel::inspect
