// SPDX-License-Identifier: MIT
#include "outputs/text.h"

#include <nlohmann/json.hpp>

#include <array>
#include <charconv>
#include <limits>

namespace quorvel::host {

namespace {

// A whole number in a base that is a power of two, with leading zeros.
std::string padded(unsigned int number, int base, std::size_t width) {
    std::array<char, std::numeric_limits<unsigned int>::digits> digits{};
    auto* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number, base).ptr;
    std::string text(digits.data(), end);
    if (text.size() < width) text.insert(0, width - text.size(), '0');
    for (char& digit : text) {
        if (digit >= 'a') digit = static_cast<char>(digit - 'a' + 'A');
    }
    return text;
}

} // namespace

std::string fixed(double number, int decimals) {
    constexpr std::size_t kMostDigits = std::numeric_limits<double>::max_exponent10 + 64;
    std::array<char, kMostDigits> text{};
    auto const result =
        std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed, decimals);
    return {text.data(), result.ptr};
}

double seconds(TimeMs time) { return static_cast<double>(time) / 1000; }

std::string addressText(unsigned int address) { return padded(address, 16, 6); }

std::string squawkText(unsigned int code) { return padded(code, 8, 4); }

std::string validUtf8(std::string const& text) {
    using Json = nlohmann::json;
    return Json::parse(Json(text).dump(-1, ' ', false, Json::error_handler_t::replace)).get<std::string>();
}

} // namespace quorvel::host
