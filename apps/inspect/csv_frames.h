// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/frame.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quorvel::inspect {

/// Makes frames out of lines "SECONDS,HEX": when a Mode S frame came, as a decimal number of seconds from any start, and
/// its bytes in hexadecimal digits. The first line may be a header. Line ends may be those of any system, and lines may be
/// cut anywhere.
class CsvFrames {
public:
    /// Whether a recording that begins like this is of such lines; none while that cannot be told.
    static std::optional<bool> recognizes(std::string_view beginning, bool isWhole);

    /// Appends the frames of the lines that the next bytes end.
    void feed(std::string_view bytes, airspace::Frames& frames);

    /// Appends that of a last line without an end.
    void finish(airspace::Frames& frames);

    /// Lines that are no frames, without blank ones and a header.
    std::uint64_t badLines() const { return _badLines; }

private:
    void take(std::string_view line, airspace::Frames& frames);

    std::string _line; // what is there of one
    std::uint64_t _lines = 0;
    std::uint64_t _badLines = 0;
};

} // namespace quorvel::inspect
