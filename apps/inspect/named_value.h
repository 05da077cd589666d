// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/comm_b.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace quorvel::inspect {

/// A value of a reading; registers are named by their texts.
using Value = std::variant<bool, int, double, std::string, std::vector<std::string>>;

/// A value with its name in `visitFields`.
struct NamedValue {
    std::string name;
    Value value;

    bool operator==(NamedValue const&) const = default;
};

/// Values in the order in which they were given, each name once: a visitor of `visitFields`.
class NamedValues {
public:
    template <class Given> void operator()(std::string_view name, Given const& given) { set(name, Value(given)); }
    void operator()(std::string_view name, std::string_view text) { set(name, std::string(text)); }
    void operator()(std::string_view name, airspace::RegisterNumbers const& numbers) {
        std::vector<std::string> texts;
        for (auto const number : numbers) texts.emplace_back(airspace::nameOf(number).text());
        set(name, std::move(texts));
    }

    /// The value of a name; null when there is none.
    Value const* find(std::string_view name) const {
        auto const found = std::ranges::find(_values, name, &NamedValue::name);
        return found != _values.end() ? &found->value : nullptr;
    }

    bool empty() const { return _values.empty(); }
    auto begin() const { return _values.begin(); }
    auto end() const { return _values.end(); }

private:
    void set(std::string_view name, Value value) {
        auto const found = std::ranges::find(_values, name, &NamedValue::name);
        if (found != _values.end())
            found->value = std::move(value);
        else
            _values.push_back({std::string(name), std::move(value)});
    }

    std::vector<NamedValue> _values;
};

} // namespace quorvel::inspect
