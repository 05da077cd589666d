// SPDX-License-Identifier: MIT
#include "outputs/details.h"

#include "outputs/columns.h"
#include "outputs/item_text.h"
#include "outputs/output_text.h"
#include "outputs/shown_aircraft.h"

#include <initializer_list>
#include <string_view>
#include <utility>

namespace quorvel::outputs {

namespace {

constexpr std::size_t kLabelWidth = 20;
constexpr std::size_t kValueWidth = 18;
constexpr std::size_t kAgeWidth = 9;
constexpr std::size_t kTimeWidth = 12; // 12:34:56.789
constexpr std::size_t kLongTimeWidth = 24;
constexpr int kColumnsForLongTimes = 107;
constexpr int kDecimals = 3;
constexpr int kDegreeDecimals = 6; // a tenth of a metre

class Details {
public:
    Details(Aircraft const& aircraft, int columns)
        : _aircraft(aircraft)
        , _columns(static_cast<std::size_t>(columns > 0 ? columns : 0))
        , _longTimes(columns >= kColumnsForLongTimes) {}

    void section(char const* title) {
        if (!_screen.empty()) add("", {});
        add(cells(title, "Value", "Age", "Last update", "Last change"), {.bold = true});
    }

    void row(std::string const& label, bool valid, std::string const& value, airspace::TimeMs update = 0,
        airspace::TimeMs change = 0) {
        auto const age = _aircraft.age(update);
        auto const ageText = update == 0 ? std::string() : fixed(seconds(age), 1) + " s";
        add(cells(label, valid ? value : "-", ageText, time(update), time(change)),
            {.dim = update != 0 && age > kPositionShown});
    }

    terminal::Screen take() && { return std::move(_screen); }

private:
    std::string time(airspace::TimeMs time) const {
        constexpr std::size_t kDateLength = 10;
        auto text = modes::ADSBTargetReport::timeToString(time);
        if (_longTimes || text.size() != kLongTimeWidth) return text;
        auto const today = modes::ADSBTargetReport::timeToString(_aircraft.now).substr(0, kDateLength);
        auto const date = text.substr(0, kDateLength);
        return date == today ? text.substr(kDateLength + 1, kTimeWidth) : date;
    }

    std::string cells(std::string const& label, std::string const& value, std::string const& age,
        std::string const& update, std::string const& change) const {
        auto const timeWidth = _longTimes ? kLongTimeWidth : kTimeWidth;
        return aligned(label, kLabelWidth, true) + "  " + aligned(value, kValueWidth, true) + "  " +
               aligned(age, kAgeWidth, false) + "  " + aligned(update, timeWidth, true) + "  " + change;
    }

    void add(std::string text, terminal::Style style) {
        if (text.size() > _columns) text.resize(_columns);
        text.erase(text.find_last_not_of(' ') + 1);
        _screen.push_back({{std::move(text), style}});
    }

    Aircraft const& _aircraft;
    std::size_t _columns;
    bool _longTimes;
    terminal::Screen _screen;
};

void addIdentification(Details& to, Aircraft const& a) {
    to.section("Identification");
    if (a.trackNumber != 0) to.row("Track number", true, std::to_string(a.trackNumber), a.heard);
    to.row("Address", true, a.name(), a.heard);
    if (!a.state.empty()) to.row("State", true, std::string(a.state) + (a.isMilitaryAddress ? ", military" : ""));
    if (!a.type.empty()) to.row("Type", true, files::printable(a.type));
    if (!a.operatorName.empty()) to.row("Operator", true, files::printable(a.operatorName));
    to.row("Source", !a.source.empty(), files::printable(a.source));
    to.row("Messages", true, std::to_string(a.messages));
    to.row("Positions refused", true, std::to_string(a.positionsRefused));
}

std::string textOf(std::string const& callsign) { return files::printable(callsign); }
std::string textOf(airspace::EmitterCategory category) {
    return (category.set != 0 ? std::string(1, category.set) : std::string()) + std::to_string(category.number);
}
std::string textOf(double value) { return fixed(value, kDecimals); }
template <class Number> std::string textOf(Number value) { return std::to_string(value); }
std::string textOf(airspace::ResolutionAdvisory const& advisory) { return wordsOf(advisory); }
std::string textOf(airspace::EmergencyState emergency) { return nameOf(emergency); }
std::string textOf(airspace::SilBasis basis) { return nameOf(basis); }

std::string textOf(airspace::SelectedModes const& modes) {
    std::string text;
    for (auto const& name : namesOf(modes)) text += (text.empty() ? "" : " ") + name;
    return text.empty() ? "none" : text;
}

// Names of the two values of a flag; other values are numbers.
struct FlagText {
    std::string_view item;
    char const* yes;
    char const* no;
};
constexpr FlagText kFlags[] = {
    {"groundStatus", "on ground", "airborne"},
    {"spiStatus", "SPI", "no SPI"},
    {"alertStatus", "alert", "no alert"},
};

std::string valueText(airspace::ItemText const& text, bool value) {
    for (auto const& flag : kFlags) {
        if (flag.item == text.name) return value ? flag.yes : flag.no;
    }
    return value ? "1" : "0";
}

template <class T> std::string valueText(airspace::ItemText const& text, T const& value) {
    return textOf(value) + (text.unit.empty() ? "" : " " + std::string(text.unit));
}

std::string versionText(Aircraft const& a) {
    constexpr std::string_view kDocuments[] = {"0 (DO-260)", "1 (DO-260A)", "2 (DO-260B)"};
    if (!a.mopsVersion.value) return "unknown";
    auto const version = *a.mopsVersion.value;
    auto const text = version < std::size(kDocuments) ? std::string(kDocuments[version]) : std::to_string(version);
    return text + (a.mopsVersionConfirmed ? "" : ", assumed");
}

// What was never reported is left out.
template <class T> bool isReported(airspace::Item<T> const& item) { return item.value || item.updated != 0; }

template <class T>
void addItem(Details& to, airspace::ItemText const& text, airspace::Item<T> const& item, Aircraft const& a) {
    if (!isReported(item)) return;
    auto const value = text.name == "mopsVersion" ? versionText(a) : item.value ? valueText(text, *item.value) : "";
    to.row(std::string(text.label), item.value.has_value(), value, item.updated, item.changed);
}

void addItem(
    Details& to, airspace::ItemText const& text, airspace::Item<airspace::Place> const& item, Aircraft const&) {
    if (!isReported(item)) return;
    auto const place = item.value.value_or(airspace::Place{});
    modes::ADSBTargetReport report; // words positions
    report.setPosition(place.latitude, place.longitude);
    bool const valid = item.value.has_value();
    to.row(std::string(text.label), valid, report.positionString(), item.updated);
    to.row("Latitude", valid, fixed(place.latitude, kDegreeDecimals), item.updated);
    to.row("Longitude", valid, fixed(place.longitude, kDegreeDecimals), item.updated);
}

using Group = airspace::ItemText::Group;

void addSection(Details& to, char const* title, std::initializer_list<Group> groups, Aircraft const& a) {
    to.section(title);
    for (auto const group : groups) {
        airspace::visitItems(a, [&](airspace::ItemText const& text, auto const& item) {
            if (text.group == group) addItem(to, text, item, a);
        });
    }
}

} // namespace

terminal::Screen details(Aircraft const& aircraft, int columns) {
    Details details(aircraft, columns);
    addIdentification(details, aircraft);
    addSection(details, "Static", {Group::Identity, Group::Status}, aircraft);
    addSection(details, "Tactical", {Group::Motion, Group::Air, Group::Intent}, aircraft);
    addSection(details, "Quality", {Group::Quality}, aircraft);
    return std::move(details).take();
}

} // namespace quorvel::outputs
