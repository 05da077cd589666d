// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>

namespace quorvel::modes {

/// Names of the values 0 to N - 1 of an enumeration or code, and one for every other value.
/// The references handed out live as long as the table, which is a constant of its module.
///
///     NameTable const kNames{{"Uplink", "Downlink"}, "unknown"};
///     kNames[1];  // "Downlink"
///     kNames[7];  // "unknown"
template <std::size_t N> class NameTable {
public:
    NameTable(char const* const (&names)[N], char const* fallback) {
        std::copy(std::begin(names), std::end(names), _names.begin());
        _names.back() = fallback;
    }

    std::string const& operator[](std::size_t value) const { return _names[std::min(value, N)]; }

    static constexpr std::size_t size() { return N; }

private:
    std::array<std::string, N + 1> _names;
};

} // namespace quorvel::modes
