// SPDX-License-Identifier: MIT
#include "core/text.h"

#include <charconv>
#include <cstdarg>
#include <cstdio>

namespace quorvel::modes {

namespace {

constexpr int kDecimals = 6;
constexpr std::size_t kLongestNumber = 320 + kDecimals; // the largest double has 309 digits before the point

std::string numberText(double number, std::chars_format format) {
    char text[kLongestNumber];
    auto* const end = std::to_chars(text, text + sizeof text, number, format, kDecimals).ptr;
    return {text, end};
}

} // namespace

std::string formatted(char const* format, ...) {
    char text[64] = "";
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return text;
}

std::string fixedSix(double number) { return numberText(number, std::chars_format::fixed); }

std::string sixSignificant(double number) { return numberText(number, std::chars_format::general); }

} // namespace quorvel::modes
