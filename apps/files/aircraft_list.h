// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorvel::files {

/// What a list says of an aircraft; empty where it says nothing.
struct ListedAircraft {
    std::string_view registration; ///< its marks
    std::string_view type;         ///< designator of the type: "A320"
    std::string_view operatorName; ///< who flies it
};

/// A list of aircraft that a user has, by address: lines of values between commas, semicolons or tabs.
///
/// With a head line that names the address (hex, icao, icao24, address, ModeS), columns are found by their names:
/// registration or reg; typecode, icaotype or type; operator, ownop or owner. Without one, the columns are address,
/// registration and type, and between commas the operator. Values may stand in double or single quotes, a doubled one being one. Lines that begin
/// with no address of six hexadecimal digits are left out. Of two lines with one address, the later counts.
///
/// It is kept in little more memory than its text takes.
class AircraftList {
public:
    AircraftList() = default;

    /// Reads the text of a list, whatever it holds.
    explicit AircraftList(std::string_view text);

    /// What it says of an address; none of one that is not listed. The texts live as long as the list.
    std::optional<ListedAircraft> find(std::uint32_t address) const;

    std::size_t size() const { return _rows.size(); } ///< how many lines have an address

private:
    struct Row {
        std::uint32_t address;
        std::uint32_t start; // of its texts, each with a zero behind it
    };

    void add(std::uint32_t address, ListedAircraft const& aircraft);

    std::vector<Row> _rows; // by address
    std::string _texts;
};

/// Reads a list from a file, which may be compressed with gzip or zstd. Throws HostError when it cannot be read, is damaged,
/// holds no aircraft, or more than 256 MiB.
AircraftList readAircraftList(std::string const& path);

} // namespace quorvel::files
