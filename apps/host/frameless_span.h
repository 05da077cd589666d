// SPDX-License-Identifier: MIT
#pragma once

#include "host/encoding.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quorvel::host {

/// Watches how much of a stream goes by without a frame: a receiver or a recording that changes its encoding
/// in the middle would otherwise fall silent without a word.
class FramelessSpan {
public:
    static constexpr std::size_t kNotable = 64 * 1024;       ///< bytes, while more may come
    static constexpr std::size_t kNotableAtFirst = 4 * 1024; ///< bytes, when there was never a frame before
    static constexpr std::size_t kNotableAtEnd = 4 * 1024;   ///< bytes, when nothing comes any more

    static constexpr std::size_t kMoreThanAFrame = 64; ///< bytes, when there was none at all

    /// Takes note of bytes that were read and whether they gave a frame. True when the span has just become
    /// notable.
    bool take(std::string_view bytes, bool gaveFrames);

    /// True when bytes of which nothing has come for a while, be they few, look like something else than
    /// expected: for streams on which little happens.
    bool settle(std::optional<Encoding> expected);

    /// True at the end of a stream whose last bytes were notably many without a frame, or look like something
    /// else than expected, and were not told of before.
    bool finish(std::optional<Encoding> expected);

    /// What to say of it: "no frames in the last 65536 bytes: this looks like AVR text; expected Beast".
    std::string text(std::optional<Encoding> expected) const;

    std::size_t bytes() const { return _bytes; }

private:
    bool tell(std::size_t notable) {
        bool const tells = !_isTold && _bytes >= notable;
        _isTold = _isTold || tells;
        return tells;
    }

    std::size_t _bytes = 0;
    std::string _begin; // of it, as much as is looked at
    bool _hadFrames = false;
    bool _isTold = false;
};

} // namespace quorvel::host
