// SPDX-License-Identifier: MIT
#include <modes/modes_encapsulation.h>

#include <array>

namespace quorvel::modes {

namespace {

struct FormatTraits {
    char const* identifier;
    char const* name;
    ModeSEncapsulation::Records (*extract)(std::string&);
    std::string (*encapsulate)(ModeSEncapsulation const&);
};

// By format. What a format cannot do leaves the buffer alone or yields nothing.
constexpr std::array<FormatTraits, ModeSEncapsulation::Beast + 1> kFormats{{
    {"unknown", "Unknown", nullptr, nullptr},
    {"hex", "Raw Hex", &ModeSEncapsulation::extractRawHex, &ModeSEncapsulation::encapsulateRawHex},
    {"bin", "Raw Bin", &ModeSEncapsulation::extractRawBin, &ModeSEncapsulation::encapsulateRawBin},
    {"avr", "AVR", &ModeSEncapsulation::extractAvr, &ModeSEncapsulation::encapsulateAvr},
    {"beast", "Beast", &ModeSEncapsulation::extractBeast, nullptr},
}};

FormatTraits const& traitsOf(ModeSEncapsulation::Format format) {
    return kFormats[format < kFormats.size() ? format : ModeSEncapsulation::Unknown];
}

} // namespace

std::string ModeSEncapsulation::identifier(Format const& format) { return traitsOf(format).identifier; }

std::string ModeSEncapsulation::name(Format const& format) { return traitsOf(format).name; }

ModeSEncapsulation::Format ModeSEncapsulation::fromIdentifier(std::string const& identifier) {
    for (std::uint32_t format = RawHex; format < kFormats.size(); ++format) {
        if (identifier == kFormats[format].identifier) return static_cast<Format>(format);
    }
    return Unknown;
}

ModeSEncapsulation::Records ModeSEncapsulation::extract(std::string& buffer, Format const& format) {
    auto const extractor = traitsOf(format).extract;
    return extractor ? extractor(buffer) : Records();
}

std::string ModeSEncapsulation::encapsulate(ModeSEncapsulation const& record, Format const& format) {
    auto const encoder = traitsOf(format).encapsulate;
    return encoder ? encoder(record) : std::string();
}

} // namespace quorvel::modes
