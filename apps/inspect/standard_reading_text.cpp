// SPDX-License-Identifier: MIT
#include "inspect/standard_reading_text.h"

#include "inspect/field_names.h"
#include "inspect/frame_summary_text.h"
#include "outputs/output_text.h"

#include <algorithm>
#include <sstream>
#include <utility>

namespace quorvel::inspect {

namespace {

constexpr std::size_t kLineColumns = 80;

std::string fewDecimals(double number) {
    auto text = outputs::fixed(number, 3);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.')) text.pop_back();
    return text == "-0" ? "0" : text;
}

std::string codeText(int code, ValueTitle const& title) {
    auto const known = code >= 0 && static_cast<std::size_t>(code) < title.words.size();
    if (!known) return std::to_string(code);
    std::string const word(title.words[static_cast<std::size_t>(code)]);
    return title.hasCode ? std::to_string(code) + ", " + word : word;
}

// The text of a value, without its unit.
struct TextOf {
    ValueTitle const& title;

    std::string operator()(bool value) const { return codeText(value ? 1 : 0, title); }
    std::string operator()(int value) const { return codeText(value, title); }
    std::string operator()(double value) const { return fewDecimals(value); }
    std::string operator()(std::string const& value) const {
        return title.name == "emitter_category" ? emitterCategoryText(value) : value;
    }
    std::string operator()(std::vector<std::string> const& values) const {
        std::string text;
        for (auto const& value : values) text += (text.empty() ? "" : " ") + value;
        return text;
    }
};

ValueTitle titleFor(std::string_view name) {
    auto const* const known = titleOfValue(name);
    return known ? *known : ValueTitle{name, name, ""};
}

std::string valueText(Value const& value, ValueTitle const& title) {
    auto const text = std::visit(TextOf{title}, value);
    return title.unit.empty() ? text : text + " " + std::string(title.unit);
}

// Lines of at most 80 columns: what is longer goes on in lines that are indented.
std::string fitted(std::string const& text, std::size_t indent) {
    std::istringstream lines(text);
    std::string fitting;
    for (std::string line; std::getline(lines, line);) {
        while (line.size() > kLineColumns) {
            auto const blank = line.rfind(' ', kLineColumns);
            if (blank == std::string::npos || blank <= indent) break;
            fitting += line.substr(0, blank) + "\n";
            line.replace(0, blank + 1, std::string(indent, ' '));
        }
        fitting += line + "\n";
    }
    return fitting;
}

using Row = std::pair<std::string, std::string>;

std::vector<Row> rowsOf(StandardReading const& reading) {
    std::vector<Row> rows;
    auto const add = [&](std::string_view name, Value const* standard, Value const* library) {
        auto const title = titleFor(name);
        if (title.title.empty()) return;
        auto text = standard ? valueText(*standard, title) : "none";
        if (library) text += " (library: " + std::visit(TextOf{title}, *library) + ")";
        rows.emplace_back(title.title, std::move(text));
    };
    for (auto const& [name, value] : reading.values) add(name, &value, reading.libraryValues.find(name));
    for (auto const& [name, value] : reading.libraryValues) {
        if (!reading.values.find(name)) add(name, nullptr, &value);
    }
    return rows;
}

std::string valuesText(StandardReading const& reading) {
    auto const rows = rowsOf(reading);
    std::size_t columns = kSummaryTextColumn - 4;
    for (auto const& row : rows) columns = std::max(columns, row.first.size());
    std::string text;
    for (auto const& [title, value] : rows)
        text += "  " + title + std::string(columns + 2 - title.size(), ' ') + files::printable(value) + "\n";
    return text.empty() ? "" : "\n" + fitted(text, columns + 4);
}

std::string registerText(airspace::RegisterChoice const& choice) {
    if (!choice.best) return "none that is known";
    auto const text = std::string(airspace::nameOf(*choice.best).text()) + ", " + std::string(titleOf(*choice.best));
    auto const score = outputs::fixed(choice.score, 2);
    return text + (choice.isUnsure ? "; unsure, score " : "; score ") + score;
}

std::string messageText(StandardReading const& reading) {
    auto const& squitter = std::get<airspace::ExtendedSquitter>(reading.reply.message);
    auto text = reading.messageName;
    if (squitter.typeCode) text += ", type code " + std::to_string(*squitter.typeCode);
    if (auto const* number = reading.values.find("bds")) text += ", register " + std::get<std::string>(*number);
    return text;
}

std::string unreadText(StandardReading const& reading) {
    auto const* const squitter = std::get_if<airspace::ExtendedSquitter>(&reading.reply.message);
    if (squitter && std::holds_alternative<airspace::UnreadSquitter>(squitter->content))
        return summaryLine("Contents", "not read: reserved, not public, or not of this version");
    return reading.isUnreadByLibrary ? summaryLine("Library", "does not read this message") : "";
}

Json jsonOf(NamedValues const& values) {
    auto json = Json::object();
    for (auto const& [name, value] : values)
        std::visit([&json, &key = name](auto const& one) { json[key] = one; }, value);
    return json;
}

Json jsonOf(airspace::RegisterChoice const& choice) {
    if (!choice.best) return {};
    return {{"number", airspace::nameOf(*choice.best).text()}, {"score", choice.score}, {"sure", !choice.isUnsure}};
}

} // namespace

std::string readingText(StandardReading const& reading) {
    auto text = summaryText(reading, reading.parity ? reading.parity->meaning : "");
    if (!reading.messageName.empty()) text += summaryLine("Message", messageText(reading));
    if (reading.version) text += summaryLine("ADS-B version", std::to_string(*reading.version));
    if (reading.registerChoice) text += summaryLine("Register", registerText(*reading.registerChoice));
    text += unreadText(reading);
    return fitted(text, kSummaryTextColumn) + valuesText(reading) +
           positionText(reading.position, "with the frames before it");
}

std::string readingJson(StandardReading const& reading) {
    Json json{{"formatVersion", outputs::kJsonFormatVersion}};
    json.update(summaryJson(reading));
    json["message"] = orNull(reading.messageName);
    json["version"] = orNull(reading.version);
    json["register"] = reading.registerChoice ? jsonOf(*reading.registerChoice) : Json();
    json["values"] = jsonOf(reading.values);
    json["library"] = jsonOf(reading.libraryValues);
    json["position"] = positionJson(reading.position);
    return lineOf(json);
}

} // namespace quorvel::inspect
