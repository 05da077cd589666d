// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/encoding.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quorvel::airspace {

/// Watches how much of a stream goes by without a frame: a receiver or a recording that changes its encoding
/// in the middle would otherwise fall silent unnoticed.
class FramelessSpan {
public:
    static constexpr std::size_t kNotable = 64 * 1024;       ///< bytes, while more may come
    static constexpr std::size_t kNotableAtFirst = 4 * 1024; ///< bytes, when there was never a frame before
    static constexpr std::size_t kNotableAtEnd = 4 * 1024;   ///< bytes, when nothing comes any more

    static constexpr std::size_t kMoreThanAFrame = 64; ///< bytes, when there was none at all

    /// Takes note of bytes that were read and whether they gave a frame. True when the span has just become
    /// notable.
    bool take(std::string_view bytes, bool gaveFrames);

    /// True when bytes that have given no frame for a while, even few of them, do not look as expected: for streams on
    /// which little happens.
    bool settle(std::optional<Encoding> expected);

    /// True at the end of a stream whose last bytes were notably many without a frame, or do not look as expected, and
    /// were not reported before.
    bool finish(std::optional<Encoding> expected);

    /// The message about it: "no frames in the last 65536 bytes: this looks like AVR text; expected Beast".
    std::string text(std::optional<Encoding> expected) const;

    std::size_t bytes() const { return _bytes; }

private:
    bool report(std::size_t notable) {
        bool const reports = !_isReported && _bytes >= notable;
        _isReported = _isReported || reports;
        return reports;
    }

    std::size_t _bytes = 0;
    std::string _start; // of it, as much as is looked at
    bool _hadFrames = false;
    bool _isReported = false;
};

} // namespace quorvel::airspace
