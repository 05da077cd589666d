// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quorvel::host {

/// Takes the doubling out of a Beast stream. Receivers send every 0x1A inside a frame twice, so that a single
/// one always begins a frame; the library takes frames by their lengths alone, as they are without the
/// doubling.
///
/// The stream may be cut anywhere. What comes out are whole plain frames of types "1", "2" and "3", one after
/// the other; frames of type "4" (receiver status), broken frames and bytes between frames are dropped.
class BeastUndoubler {
public:
    /// Takes the next bytes of the stream and appends the frames that are complete to `plain`.
    void undouble(std::string_view bytes, std::string& plain);

    std::size_t frames() const { return _frames; } ///< complete frames so far, of all types
    std::size_t broken() const { return _broken; } ///< frames that another one cut short, so far

private:
    void beginFrame(char type);
    void take(char byte, std::string& plain);

    std::string _frame;          // the frame being read, 0x1A and type first; empty between frames
    std::size_t _frameBytes = 0; // how long it will be
    bool _escaped = false;       // the byte before was a 0x1A whose meaning is open
    std::size_t _frames = 0;
    std::size_t _broken = 0;
};

/// Whether a Beast stream that begins like this has its escape bytes doubled: whether more of its frames
/// follow each other without a gap when they are read so. True when there is no difference.
bool looksDoubled(std::string_view sample);

/// How many bytes of a sample are frames that follow each other without a gap, read as plain or as doubled.
std::size_t chainedBytes(std::string_view sample, bool doubled);

} // namespace quorvel::host
