// SPDX-License-Identifier: MIT
#include "outputs/item_text.h"

#include <cstddef>
#include <optional>

namespace quorvel::outputs {

namespace {

// By the enumerators.
constexpr char const* kSources[] = {"", "ADS-B", "ADS-R", "TIS-B", "Mode S", "Comm-B", "derived"};
constexpr char const* kEmergencies[] = {
    "none", "general", "lifeguard", "minfuel", "nordo", "unlawful", "downed", "reserved"};
constexpr char const* kSilBases[] = {"unknown", "perhour", "persample"};

class Words {
public:
    void add(bool isSo, char const* word) {
        if (isSo) (_text += _text.empty() ? "" : ", ") += word;
    }
    std::string text() const { return _text; }

private:
    std::string _text;
};

void addSense(Words& words, airspace::SameSenseAdvisory const& advisory) {
    bool const isUpward = !advisory.isDownward;
    words.add(advisory.isPositive, isUpward ? "climb" : "descend");
    words.add(!advisory.isPositive, isUpward ? "do not descend" : "do not climb");
    words.add(advisory.isIncreasedRate, "faster");
    words.add(advisory.isCorrective, "corrective");
    words.add(advisory.isSenseReversal, "reversed");
    words.add(advisory.crossesAltitude, "crossing");
}

void addSense(Words& words, airspace::MixedSenseAdvisory const& advisory) {
    words.add(advisory.requiresClimb, "climb");
    words.add(!advisory.requiresClimb && advisory.correctsUpward, "do not descend");
    words.add(advisory.requiresDescent, "descend");
    words.add(!advisory.requiresDescent && advisory.correctsDownward, "do not climb");
    words.add(advisory.isSenseReversal, "reversed");
    words.add(advisory.crossesAltitude, "crossing");
}

} // namespace

char const* nameOf(airspace::Source source) { return kSources[static_cast<std::size_t>(source)]; }

char const* nameOf(airspace::EmergencyState emergency) { return kEmergencies[static_cast<std::size_t>(emergency)]; }

char const* nameOf(airspace::SilBasis basis) { return kSilBases[static_cast<std::size_t>(basis)]; }

std::vector<std::string> namesOf(airspace::SelectedModes const& modes) {
    std::vector<std::string> names;
    auto const add = [&](char const* name, std::optional<bool> isOn) {
        if (isOn.value_or(false)) names.emplace_back(name);
    };
    add("autopilot", modes.autopilot);
    add("vnav", modes.vnav);
    add("althold", modes.altitudeHold);
    add("approach", modes.approach);
    add("lnav", modes.lnav);
    add("tcas", modes.tcas);
    return names;
}

std::string wordsOf(airspace::ResolutionAdvisory const& advisory) {
    Words words;
    words.add(!advisory.isIssued(), "none");
    if (advisory.sameSense) addSense(words, *advisory.sameSense);
    if (advisory.mixedSense) addSense(words, *advisory.mixedSense);
    words.add(advisory.hasMultipleThreats, "several threats");
    words.add(advisory.isTerminated, "ended");
    return words.text();
}

} // namespace quorvel::outputs
