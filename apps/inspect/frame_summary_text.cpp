// SPDX-License-Identifier: MIT
#include "inspect/frame_summary_text.h"

#include "inspect/dissection.h"
#include "inspect/frame_text.h"
#include "outputs/output_text.h"

namespace quorvel::inspect {

namespace {

constexpr unsigned kParityDigits = 6;
constexpr unsigned kAddressDigits = 6;
constexpr int kDegreeDecimals = 5; // about a metre

std::string confidenceText(modes::ModeSMessage::Confidence confidence) {
    constexpr char const* kReasons[] = {"nothing confirms its address", "its address was not announced before",
        "its address is known, its interrogator not yet", "its address is announced or known"};
    return nameOf(confidence) + ": " + kReasons[confidence];
}

std::string repairText(FrameSummary const& summary) {
    std::string text = summary.repairedBits.size() == 1 ? "bit " : "bits ";
    for (auto const bit : summary.repairedBits)
        text += (bit == summary.repairedBits.front() ? "" : ", ") + std::to_string(bit);
    return text + ": " + hexText(summary.bytes);
}

Json jsonOf(ParityView const& parity) {
    return {{"received", hexText(parity.field, kParityDigits)},
        {"calculated", hexText(parity.calculated, kParityDigits)},
        {"remainder", hexText(parity.remainder(), kParityDigits)}, {"meaning", parity.meaning}};
}

} // namespace

std::string summaryLine(std::string const& name, std::string const& text) {
    constexpr std::size_t kNameColumns = kSummaryTextColumn - 2;
    std::string const blanks(name.size() < kNameColumns ? kNameColumns - name.size() : 1, ' ');
    return "  " + name + blanks + text + "\n";
}

std::string summaryText(FrameSummary const& summary, std::string const& parity) {
    auto text = hexText(summary.received) + "\n";
    auto const format = summary.format ? "DF" + std::to_string(*summary.format) + ", " : "";
    text += summaryLine("Format", format + summary.formatName);
    if (!summary.problem.empty()) text += summaryLine("Problem", summary.problem);
    if (summary.confidence) text += summaryLine("Confidence", confidenceText(*summary.confidence));
    if (!parity.empty()) text += summaryLine("Parity", parity);
    if (!summary.repairedBits.empty()) text += summaryLine("Repaired", repairText(summary));
    if (summary.address) text += summaryLine("Address", hexText(*summary.address, kAddressDigits));
    return text;
}

std::string positionText(std::optional<airspace::Place> const& position, std::string const& source) {
    if (!position) return "";
    return "\n" + summaryLine("Position", outputs::fixed(position->latitude, kDegreeDecimals) + ", " +
                                              outputs::fixed(position->longitude, kDegreeDecimals) + ", " + source);
}

Json orNull(std::string const& text) { return text.empty() ? Json() : Json(text); }

Json summaryJson(FrameSummary const& summary) {
    Json json{
        {"frame", hexText(summary.received)}, {"format", orNull(summary.format)}, {"formatName", summary.formatName}};
    json["problem"] = orNull(summary.problem);
    json["confidence"] = summary.confidence ? Json(nameOf(*summary.confidence)) : Json();
    json["parity"] = summary.parity ? jsonOf(*summary.parity) : Json();
    json["repairedBits"] = summary.repairedBits;
    json["repairedFrame"] = summary.repairedBits.empty() ? Json() : Json(hexText(summary.bytes));
    json["address"] = summary.address ? Json(hexText(*summary.address, kAddressDigits)) : Json();
    return json;
}

Json positionJson(std::optional<airspace::Place> const& position) {
    if (!position) return {};
    return {{"latitude", position->latitude}, {"longitude", position->longitude}};
}

std::string lineOf(Json const& json) { return json.dump(-1, ' ', true, Json::error_handler_t::replace) + "\n"; }

} // namespace quorvel::inspect
