// SPDX-License-Identifier: MIT
#include "outputs/output_text.h"

#include <nlohmann/json.hpp>

#include <array>
#include <charconv>
#include <limits>

namespace quorvel::outputs {

std::string fixed(double number, int decimals) {
    constexpr std::size_t kMostDigits = std::numeric_limits<double>::max_exponent10 + 64;
    std::array<char, kMostDigits> text{};
    auto const result =
        std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed, decimals);
    return {text.data(), result.ptr};
}

double seconds(airspace::TimeMs time) { return static_cast<double>(time) / 1000; }

std::string validUtf8(std::string const& text) {
    using Json = nlohmann::json;
    return Json::parse(Json(text).dump(-1, ' ', false, Json::error_handler_t::replace)).get<std::string>();
}

} // namespace quorvel::outputs
