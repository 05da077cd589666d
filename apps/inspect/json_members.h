// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/comm_b.h>

#include <array>
#include <charconv>
#include <concepts>
#include <string>
#include <string_view>

namespace quorvel::inspect {

/// Writes named values as one JSON object, member by member: a visitor of `visitFields`. Numbers have the shortest form
/// that reads as the same value. Names and texts are those of readings, in which nothing has to be escaped.
class JsonMembers {
public:
    /// Appends to `out`, which must live as long.
    explicit JsonMembers(std::string& out) : _out(out) {}

    void operator()(std::string_view name, bool value) { member(name) += value ? "true" : "false"; }

    template <class Number>
    requires std::integral<Number> || std::floating_point<Number>
    void operator()(std::string_view name, Number value) {
        std::array<char, 32> digits{};
        auto const end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
        member(name).append(digits.data(), end);
    }

    void operator()(std::string_view name, std::string_view text) { (((member(name) += '"') += text) += '"'); }

    void operator()(std::string_view name, airspace::RegisterNumbers const& numbers) {
        auto& list = member(name);
        char separator = '[';
        for (auto const number : numbers) {
            ((((list += separator) += '"') += airspace::nameOf(number).text()) += '"');
            separator = ',';
        }
        list += separator == '[' ? "[]" : "]";
    }

    /// Ends the object and its line.
    void finish() { _out += "}\n"; }

private:
    std::string& member(std::string_view name) {
        ((_out += _separator) += '"') += name;
        _separator = ',';
        return _out += "\":";
    }

    std::string& _out;
    char _separator = '{';
};

} // namespace quorvel::inspect
