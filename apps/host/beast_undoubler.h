// SPDX-License-Identifier: MIT
#pragma once

#include "host/counters.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace quorvel::host {

/// Takes the doubling out of a Beast stream. Receivers send every 0x1A inside a frame twice, so that a single
/// one always begins a frame; the library takes frames by their lengths alone, as they are without the
/// doubling.
///
/// The stream may be cut anywhere. What comes out are whole plain frames of types "1", "2" and "3", one after
/// the other; frames of type "4" (receiver status), broken frames and bytes between frames are counted and
/// dropped.
class BeastUndoubler {
public:
    /// Takes the next bytes of the stream and appends the frames that are complete to `plain`.
    void undouble(std::string_view bytes, std::string& plain, Counters& counters);

    /// Takes note of the end of the stream: a frame that it cut off is broken.
    void finish(Counters& counters);

private:
    void step(char byte, std::string& plain, Counters& counters);
    void beginFrame(char type, Counters& counters);
    void endFrame(std::string& plain, Counters& counters);
    void giveUpFrame(Counters& counters);

    std::string _frame;          // the frame being read, 0x1A and type first; empty between frames
    std::size_t _frameBytes = 0; // how long it will be
    bool _escaped = false;       // the byte before was a 0x1A whose meaning is open
};

/// Cuts the whole frames of types "1" to "3" out of a Beast stream without doubling, by their lengths, the
/// way the library does, and appends them to `plain`. What may become a frame with the next bytes stays in
/// `stream`; at the end of the stream (`isEnd`) nothing stays.
void cutPlainFrames(std::string& stream, std::string& plain, Counters& counters, bool isEnd);

/// Bytes of the plain frame at the beginning of `plain`, which holds whole frames only.
std::size_t plainFrameBytes(std::string_view plain);

/// Where the parts of a plain frame are.
inline constexpr std::size_t kBeastStampAt = 2;
inline constexpr std::size_t kBeastStampBytes = 6;
inline constexpr std::size_t kBeastSignalAt = 8;
inline constexpr char kBeastEscape = '\x1A';

/// Whether a Beast stream that begins like this has its escape bytes doubled: whether more of its frames
/// follow each other without a gap when they are read so. True when there is no difference.
bool looksDoubled(std::string_view sample);

/// How many bytes of a sample are frames that follow each other without a gap, read as plain or as doubled.
std::size_t chainedBytes(std::string_view sample, bool doubled);

} // namespace quorvel::host
