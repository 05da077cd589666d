// SPDX-License-Identifier: MIT
#include "inspect/dissection_text.h"

#include "files/printable.h"
#include "inspect/aligned_table.h"
#include "inspect/frame_text.h"
#include "outputs/output_text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>

namespace quorvel::inspect {

namespace {

using Json = nlohmann::ordered_json;

constexpr unsigned kParityDigits = 6;
constexpr std::size_t kNameColumns = 18;
constexpr int kDegreeDecimals = 5; // about a metre

std::string line(std::string const& name, std::string const& text) {
    std::string const blanks(name.size() < kNameColumns ? kNameColumns - name.size() : 1, ' ');
    return "  " + name + blanks + text + "\n";
}

std::string listText(std::vector<unsigned> const& numbers) {
    std::string text;
    for (auto const number : numbers) text += (text.empty() ? "" : ", ") + std::to_string(number);
    return text;
}

std::string versionsText(Versions const& versions) {
    return listText(std::vector<unsigned>(versions.begin(), versions.end()));
}

std::string confidenceText(modes::ModeSMessage::Confidence confidence) {
    constexpr char const* kReasons[] = {"nothing confirms its address", "its address was not announced before",
        "its address is known, its interrogator not yet", "its address is announced or known"};
    return nameOf(confidence) + ": " + kReasons[confidence];
}

std::string parityText(ParityView const& parity) {
    return hexText(parity.field, kParityDigits) + " received, " + hexText(parity.calculated, kParityDigits) +
           " calculated, remainder " + hexText(parity.remainder(), kParityDigits) + " (" + parity.meaning + ")";
}

std::string placeOf(FieldView const& field, unsigned origin) {
    auto const first = field.firstBit - origin;
    return std::to_string(first) + (field.width == 1 ? "" : "-" + std::to_string(first + field.width - 1));
}

std::string tableOf(std::vector<FieldView> const& fields, std::size_t versions) {
    std::vector<TableRow> rows;
    for (auto const& field : fields) {
        auto const isPayload = field.firstBit >= kPayloadFirstBit && versions > 0;
        bool const isOfAll = field.versions.empty() || field.versions.size() == versions;
        auto const value = files::printable(field.text);
        rows.push_back({placeOf(field, 0), isPayload ? placeOf(field, kPayloadFirstBit - 1) : "",
            std::to_string(field.width), field.name, field.title, field.raw,
            field.meaning.empty() ? value : value + ": " + field.meaning, isOfAll ? "" : versionsText(field.versions)});
    }
    return alignedTable({{"Bits", Align::Right}, {"ME bits", Align::Right}, {"Width", Align::Right}, {"Field"},
                            {"Name"}, {"Raw"}, {"Value"}, {"Versions"}},
        rows, "  ");
}

std::string versionsTitle(Versions const& versions) {
    return (versions.size() == 1 ? "Version " : "Versions ") + versionsText(versions);
}

// Readings may differ in their fields and not in their description.
std::vector<std::pair<std::string, Versions>> descriptionsOf(PayloadView const& payload) {
    std::vector<std::pair<std::string, Versions>> descriptions;
    for (auto const& reading : payload.readings) {
        auto same = std::find_if(descriptions.begin(), descriptions.end(),
            [&](auto const& other) { return other.first == reading.description; });
        if (same == descriptions.end()) same = descriptions.insert(same, {reading.description, {}});
        same->second.insert(same->second.end(), reading.versions.begin(), reading.versions.end());
    }
    return descriptions;
}

std::string payloadText(Dissection const& dissection) {
    auto const& payload = *dissection.payload;
    auto text = "\n" + line("Payload", "type code " + std::to_string(payload.typeCode) + ", " + payload.typeName +
                                           ": " + payload.typeTitle);
    std::size_t versions = 0;
    for (auto const& [description, whose] : descriptionsOf(payload)) {
        versions += whose.size();
        text += line(versionsTitle(whose), files::printable(description));
    }
    if (!payload.unread.empty())
        text += line(versionsTitle(payload.unread), "not decoded: no such message, or it is not valid");
    if (payload.readings.empty()) return text;
    auto const fields = withGaps(mergedFields(payload), dissection.bytes, kPayloadFirstBit, kPayloadLastBit);
    return text + "\n" + tableOf(fields, versions);
}

template <class Value> Json orNull(std::optional<Value> const& value) { return value ? Json(*value) : Json(); }

Json jsonOf(std::vector<FieldView> const& fields) {
    auto list = Json::array();
    for (auto const& field : fields) {
        Json json{{"name", field.name}, {"title", field.title}, {"firstBit", field.firstBit}, {"width", field.width},
            {"raw", field.raw}, {"text", field.text}};
        json["meaning"] = field.meaning.empty() ? Json() : Json(field.meaning);
        list.push_back(std::move(json));
    }
    return list;
}

Json jsonOf(PayloadView const& payload) {
    Json json{{"typeCode", payload.typeCode}, {"typeName", payload.typeName}, {"typeTitle", payload.typeTitle}};
    json["readings"] = Json::array();
    for (auto const& reading : payload.readings) {
        json["readings"].push_back(
            {{"versions", reading.versions}, {"description", reading.description}, {"fields", jsonOf(reading.fields)}});
    }
    json["versionsNotDecoded"] = payload.unread;
    return json;
}

} // namespace

std::string dissectionText(Dissection const& dissection) {
    auto text = hexText(dissection.received) + "\n";
    auto const format = dissection.format ? "DF" + std::to_string(*dissection.format) + ", " : "";
    text += line("Format", format + dissection.formatName);
    if (!dissection.problem.empty()) text += line("Problem", dissection.problem);
    if (dissection.confidence) text += line("Confidence", confidenceText(*dissection.confidence));
    if (dissection.parity) text += line("Parity", parityText(*dissection.parity));
    if (!dissection.repairedBits.empty()) {
        text += line("Repaired", (dissection.repairedBits.size() == 1 ? "bit " : "bits ") +
                                     listText(dissection.repairedBits) + ": " + hexText(dissection.bytes));
    }
    if (dissection.address) text += line("Address", hexText(*dissection.address, 6));
    if (!dissection.description.empty()) text += line("Reply", files::printable(dissection.description));
    if (!dissection.fields.empty()) text += "\n" + tableOf(dissection.fields, 0);
    if (dissection.payload) text += payloadText(dissection);
    if (dissection.position) {
        text += "\n" + line("Position", outputs::fixed(dissection.position->latitude, kDegreeDecimals) + ", " +
                                            outputs::fixed(dissection.position->longitude, kDegreeDecimals) +
                                            ", of this frame and one before it");
    }
    return text;
}

std::string dissectionJson(Dissection const& dissection) {
    Json json{{"frame", hexText(dissection.received)}, {"format", orNull(dissection.format)},
        {"formatName", dissection.formatName}};
    json["problem"] = dissection.problem.empty() ? Json() : Json(dissection.problem);
    json["confidence"] = dissection.confidence ? Json(nameOf(*dissection.confidence)) : Json();
    json["parity"] = Json();
    if (dissection.parity) {
        json["parity"] = {{"received", hexText(dissection.parity->field, kParityDigits)},
            {"calculated", hexText(dissection.parity->calculated, kParityDigits)},
            {"remainder", hexText(dissection.parity->remainder(), kParityDigits)},
            {"meaning", dissection.parity->meaning}};
    }
    json["repairedBits"] = dissection.repairedBits;
    json["repairedFrame"] = dissection.repairedBits.empty() ? Json() : Json(hexText(dissection.bytes));
    json["address"] = dissection.address ? Json(hexText(*dissection.address, 6)) : Json();
    json["description"] = dissection.description.empty() ? Json() : Json(dissection.description);
    json["fields"] = jsonOf(dissection.fields);
    json["payload"] = dissection.payload ? jsonOf(*dissection.payload) : Json();
    json["position"] = Json();
    if (dissection.position) {
        json["position"] = {{"latitude", dissection.position->latitude}, {"longitude", dissection.position->longitude}};
    }
    return json.dump(-1, ' ', true, Json::error_handler_t::replace) + "\n";
}

} // namespace quorvel::inspect
