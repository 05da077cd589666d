// SPDX-License-Identifier: MIT
#include "inspect/dissection_text.h"

#include "files/printable.h"
#include "inspect/aligned_table.h"
#include "inspect/frame_summary_text.h"
#include "inspect/frame_text.h"

#include <algorithm>
#include <utility>

namespace quorvel::inspect {

namespace {

constexpr unsigned kParityDigits = 6;

std::string listText(std::vector<unsigned> const& numbers) {
    std::string text;
    for (auto const number : numbers) text += (text.empty() ? "" : ", ") + std::to_string(number);
    return text;
}

std::string versionsText(Versions const& versions) {
    return listText(std::vector<unsigned>(versions.begin(), versions.end()));
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
    auto text = "\n" + summaryLine("Payload", "type code " + std::to_string(payload.typeCode) + ", " +
                                                  payload.typeName + ": " + payload.typeTitle);
    std::size_t versions = 0;
    for (auto const& [description, whose] : descriptionsOf(payload)) {
        versions += whose.size();
        text += summaryLine(versionsTitle(whose), files::printable(description));
    }
    if (!payload.unread.empty())
        text += summaryLine(versionsTitle(payload.unread), "not decoded: no such message, or it is not valid");
    if (payload.readings.empty()) return text;
    auto const fields = withGaps(mergedFields(payload), dissection.bytes, kPayloadFirstBit, kPayloadLastBit);
    return text + "\n" + tableOf(fields, versions);
}

Json jsonOf(std::vector<FieldView> const& fields) {
    auto list = Json::array();
    for (auto const& field : fields) {
        Json json{{"name", field.name}, {"title", field.title}, {"firstBit", field.firstBit}, {"width", field.width},
            {"raw", field.raw}, {"text", field.text}};
        json["meaning"] = orNull(field.meaning);
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
    auto text = summaryText(dissection, dissection.parity ? parityText(*dissection.parity) : "");
    if (!dissection.description.empty()) text += summaryLine("Reply", files::printable(dissection.description));
    if (!dissection.fields.empty()) text += "\n" + tableOf(dissection.fields, 0);
    if (dissection.payload) text += payloadText(dissection);
    return text + positionText(dissection.position, "of this frame and one before it");
}

std::string dissectionJson(Dissection const& dissection) {
    auto json = summaryJson(dissection);
    json["description"] = orNull(dissection.description);
    json["fields"] = jsonOf(dissection.fields);
    json["payload"] = dissection.payload ? jsonOf(*dissection.payload) : Json();
    json["position"] = positionJson(dissection.position);
    return lineOf(json);
}

} // namespace quorvel::inspect
