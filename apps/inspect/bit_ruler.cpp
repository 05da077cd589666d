// SPDX-License-Identifier: MIT
#include "inspect/bit_ruler.h"

#include "inspect/frame_text.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace quorvel::inspect {

namespace {

constexpr std::string_view kSecondReadings[] = {"TYPE", "ALT_SRC", "GND_SPD"}; // of bits that have a field
constexpr std::array<std::string_view, 6> kColours{
    "\x1B[36m", "\x1B[33m", "\x1B[32m", "\x1B[35m", "\x1B[34m", "\x1B[31m"};
constexpr std::string_view kPlain = "\x1B[0m";

struct Group {
    unsigned firstBit;
    std::string name;
    std::string bits;
    std::string marks; // "^" under each repaired bit

    std::string place() const {
        auto const last = firstBit + bits.size() - 1;
        return bits.size() == 1 ? std::to_string(firstBit) : std::to_string(firstBit) + "-" + std::to_string(last);
    }
    std::size_t columns() const { return std::max({place().size(), bits.size(), name.size()}); }
};

std::vector<FieldView> shownFields(Dissection const& dissection) {
    auto fields = dissection.fields;
    if (!dissection.payload || dissection.payload->readings.empty()) return fields;
    std::erase_if(fields, [](FieldView const& field) { return field.firstBit == kPayloadFirstBit; });
    auto const merged =
        withGaps(mergedFields(*dissection.payload), dissection.bytes, kPayloadFirstBit, kPayloadLastBit);
    std::copy_if(merged.begin(), merged.end(), std::back_inserter(fields), [](FieldView const& field) {
        return std::ranges::find(kSecondReadings, field.name) == std::end(kSecondReadings);
    });
    return fields;
}

bool covers(FieldView const& field, unsigned bit) {
    return field.firstBit <= bit && bit < field.firstBit + field.width;
}

// The name of the narrowest field at a bit; names of fields that differ by version only are put together.
std::string ownerOf(unsigned bit, std::vector<FieldView> const& fields) {
    unsigned narrowest = 0;
    std::string name;
    for (auto const& field : fields) {
        if (!covers(field, bit) || (narrowest != 0 && field.width > narrowest)) continue;
        if (field.width < narrowest) name.clear();
        narrowest = field.width;
        if (!name.empty() && name != field.name) name += "/";
        if (!name.ends_with(field.name)) name += field.name;
    }
    return narrowest != 0 ? name : "-";
}

bool beginsField(unsigned bit, std::vector<FieldView> const& fields) {
    return std::ranges::any_of(fields, [bit](FieldView const& field) { return field.firstBit == bit; });
}

std::vector<Group> groupsOf(Dissection const& dissection) {
    auto const fields = shownFields(dissection);
    std::vector<Group> groups;
    for (unsigned bit = 1; bit <= 8 * dissection.bytes.size(); ++bit) {
        auto const owner = ownerOf(bit, fields);
        if (groups.empty() || groups.back().name != owner || (owner == "-" && beginsField(bit, fields)))
            groups.push_back({bit, owner, "", ""});
        auto const isRepaired = std::ranges::find(dissection.repairedBits, bit) != dissection.repairedBits.end();
        groups.back().bits += bitsOf(dissection.bytes, bit - 1, 1) != 0 ? '1' : '0';
        groups.back().marks += isRepaired ? '^' : ' ';
    }
    return groups;
}

struct Line {
    std::string text;
    bool hasContent = false;

    void add(std::string const& cell, std::size_t columns, std::string_view colour) {
        hasContent = hasContent || cell.find_first_not_of(' ') != std::string::npos;
        if (!text.empty()) text += ' ';
        text += colour;
        text += cell;
        if (!colour.empty()) text += kPlain;
        text += std::string(columns - cell.size(), ' ');
    }

    std::string finished() const {
        if (!hasContent) return "";
        return "  " + text.substr(0, text.find_last_not_of(' ') + 1) + "\n";
    }
};

} // namespace

std::string bitRuler(Dissection const& dissection, std::size_t columns, bool coloured) {
    std::string ruler;
    std::array<Line, 4> lines;
    std::size_t used = 1;
    auto const endRow = [&] {
        if (used == 1) return;
        ruler += ruler.empty() ? "" : "\n";
        for (auto const& line : lines) ruler += line.finished();
        lines = {};
        used = 1;
    };
    std::size_t number = 0;
    for (auto const& group : groupsOf(dissection)) {
        auto const width = group.columns();
        if (used + 1 + width > columns) endRow();
        used += 1 + width;
        auto const colour = coloured ? kColours[number++ % kColours.size()] : std::string_view();
        std::size_t row = 0;
        for (auto const& cell : {group.place(), group.bits, group.name, group.marks})
            lines[row++].add(cell, width, colour);
    }
    endRow();
    return ruler;
}

} // namespace quorvel::inspect
