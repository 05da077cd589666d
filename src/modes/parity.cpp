// SPDX-License-Identifier: MIT
#include "modes/parity.h"

#include "core/bits.h"

#include <algorithm>
#include <array>

namespace quorvel::modes::parity {

namespace {

constexpr std::uint32_t kGenerator = 0x1FFF409;
constexpr unsigned kParityBits = 24;
constexpr unsigned kLongFrameBits = 112;
constexpr unsigned kDataBits = kLongFrameBits - kParityBits;
constexpr unsigned kShortFrameOffset = 56; // a short frame is the end of a long one that begins with zeros

// What each data bit of a long frame adds to the remainder, the last data bit being x^24 modulo the
// generator.
constexpr auto kMarks = [] {
    std::array<std::uint32_t, kDataBits> marks{};
    std::uint32_t mark = kGenerator ^ (1U << kParityBits);
    for (unsigned i = kDataBits; i-- > 0;) {
        marks[i] = mark;
        mark <<= 1;
        if ((mark >> kParityBits & 1) != 0) mark ^= kGenerator;
    }
    return marks;
}();
static_assert(kMarks[0] == 0x3935EA && kMarks[1] == 0x1C9AF5 && kMarks[87] == 0xFFF409);

// The same for each value of each data byte.
constexpr unsigned kDataBytes = kDataBits / 8;
constexpr auto kByteMarks = [] {
    std::array<std::array<std::uint32_t, 256>, kDataBytes> marks{};
    for (unsigned byte = 0; byte < kDataBytes; ++byte) {
        for (unsigned value = 0; value < 256; ++value) {
            for (unsigned i = 0; i < 8; ++i) {
                if ((value >> (7 - i) & 1) != 0) marks[byte][value] ^= kMarks[8 * byte + i];
            }
        }
    }
    return marks;
}();

// The positions ordered by their marks, for looking a mark up.
struct Marked {
    std::uint32_t mark;
    unsigned position;
};
constexpr auto kByMark = [] {
    std::array<Marked, kDataBits> marked{};
    for (unsigned i = 0; i < kDataBits; ++i) marked[i] = {kMarks[i], i};
    std::sort(marked.begin(), marked.end(), [](Marked const& a, Marked const& b) { return a.mark < b.mark; });
    return marked;
}();

unsigned offsetOf(unsigned frameBits) { return frameBits == kLongFrameBits ? 0 : kShortFrameOffset; }

// Bits from the parity field on leave no mark.
std::uint32_t markOf(unsigned position) { return position < kDataBits ? kMarks[position] : 0; }

// The lowest position from `from` on that leaves this mark.
std::optional<unsigned> find(std::uint32_t mark, unsigned from, unsigned frameBits) {
    auto const offset = offsetOf(frameBits);
    if (mark == 0) {
        auto const position = std::max(from, kDataBits - offset);
        return position < frameBits ? std::optional(position) : std::nullopt;
    }
    auto const found =
        std::lower_bound(kByMark.begin(), kByMark.end(), mark,
                         [](Marked const& a, std::uint32_t wanted) { return a.mark < wanted; });
    if (found == kByMark.end() || found->mark != mark) return {};
    if (found->position < offset + from || found->position >= offset + frameBits) return {};
    return found->position - offset;
}

} // namespace

std::uint32_t remainder(std::string_view frame, unsigned frameBits) {
    auto const offset = offsetOf(frameBits);
    auto const bytes = std::min<std::size_t>({frame.size(), frameBits / 8, kDataBytes - offset / 8});
    std::uint32_t result = 0;
    for (std::size_t i = 0; i < bytes; ++i) {
        result ^= kByteMarks[offset / 8 + i][static_cast<unsigned char>(frame[i])];
    }
    // the odd bits of a length that is no whole number of bytes
    for (unsigned i = frameBits / 8 * 8; i < frameBits && i / 8 < frame.size(); ++i) {
        if (bit(frame, i)) result ^= markOf(offset + i);
    }
    return result;
}

std::optional<unsigned> findBit(std::uint32_t syndrome, unsigned frameBits) {
    return find(syndrome, 0, frameBits);
}

std::optional<std::pair<unsigned, unsigned>> findPair(std::uint32_t syndrome, unsigned frameBits) {
    for (unsigned first = 0; first < frameBits; ++first) {
        auto const firstMark = markOf(offsetOf(frameBits) + first);
        if (auto const second = find(syndrome ^ firstMark, first + 1, frameBits)) return {{first, *second}};
    }
    return {};
}

} // namespace quorvel::modes::parity
