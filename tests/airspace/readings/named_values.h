// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/register_fields.h>

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>

namespace quorvel::airspace::test {

/// Collects what `visitFields` gives.
struct NamedValues {
    nlohmann::json values = nlohmann::json::object();

    template <class Value> void operator()(std::string_view name, Value value) { values[std::string(name)] = value; }
    void operator()(std::string_view name, std::string_view text) { values[std::string(name)] = std::string(text); }
    void operator()(std::string_view name, RegisterNumbers const& numbers) {
        auto names = nlohmann::json::array();
        for (auto const number : numbers) names.push_back(std::string(nameOf(number).text()));
        values[std::string(name)] = names;
    }
};

} // namespace quorvel::airspace::test
