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
constexpr unsigned kShortFrameBits = 56;
constexpr unsigned kShortFrameOffset =
    kLongFrameBits - kShortFrameBits; // the end of a long frame that begins with zeros

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

// What one or two damaged data bits do to the remainder, looked up by what they did. No two of these cases
// look the same: the code tells up to five damaged bits from none.
class DamageTable {
public:
    struct Damage {
        std::uint32_t syndrome = 0; // 0: no entry
        std::uint8_t first = 0;
        std::uint8_t second = kNoBit; // of a single bit
    };
    static constexpr std::uint8_t kNoBit = 0xFF;

    constexpr DamageTable() {
        for (std::uint8_t first = 0; first < kDataBits; ++first) {
            insert({kMarks[first], first, kNoBit});
            for (std::uint8_t second = first + 1; second < kDataBits; ++second) {
                insert({kMarks[first] ^ kMarks[second], first, second});
            }
        }
    }

    constexpr Damage const* find(std::uint32_t syndrome) const {
        auto const& slot = _slots[slotOf(syndrome)];
        return slot.syndrome == syndrome ? &slot : nullptr;
    }

private:
    static constexpr unsigned kSlotBits = 13; // 8,192 slots for 3,916 cases

    // The slot that holds the syndrome, or the empty one where it would go.
    constexpr std::size_t slotOf(std::uint32_t syndrome) const {
        std::size_t slot = syndrome * 0x9E3779B1U >> (32 - kSlotBits);
        while (_slots[slot].syndrome != 0 && _slots[slot].syndrome != syndrome) {
            slot = (slot + 1) % _slots.size();
        }
        return slot;
    }

    constexpr void insert(Damage const& damage) {
        auto& slot = _slots[slotOf(damage.syndrome)];
        if (slot.syndrome != 0) throw "two cases of damage look the same"; // not at compile time
        slot = damage;
    }

    std::array<Damage, std::size_t{1} << kSlotBits> _slots{};
};
constexpr DamageTable kDamage;

unsigned offsetOf(unsigned frameBits) { return frameBits == kLongFrameBits ? 0 : kShortFrameOffset; }

// Bits from the parity field on leave no mark.
std::uint32_t markOf(unsigned position) { return position < kDataBits ? kMarks[position] : 0; }

// The first position of the parity field, whose bits leave no mark.
unsigned firstParityBit(unsigned frameBits) { return kDataBits - offsetOf(frameBits); }

// The damage of data bits that explains the syndrome, if the frame has those bits.
DamageTable::Damage const* findDamage(std::uint32_t syndrome, unsigned frameBits) {
    auto const* damage = kDamage.find(syndrome);
    if (!damage) return nullptr;
    auto const last = damage->second == DamageTable::kNoBit ? damage->first : damage->second;
    auto const offset = offsetOf(frameBits);
    return damage->first >= offset && last < offset + frameBits ? damage : nullptr;
}

// What the first `bytes` bytes of a frame add up to, the first of them being byte `FirstByte` of a long
// frame.
template <unsigned FirstByte> std::uint32_t sumOfBytes(std::string_view frame, std::size_t bytes) {
    std::uint32_t result = 0;
    for (std::size_t i = 0; i < bytes; ++i) {
        result ^= kByteMarks[FirstByte + i][static_cast<unsigned char>(frame[i])];
    }
    return result;
}

} // namespace

std::uint32_t remainder(std::string_view frame, unsigned frameBits) {
    constexpr unsigned kShortFrameFirstByte = kShortFrameOffset / 8;
    // the two lengths that replies have, without a thought about any other
    if (frameBits == kLongFrameBits && frame.size() >= kDataBytes) return sumOfBytes<0>(frame, kDataBytes);
    if (frameBits == kShortFrameBits && frame.size() >= kDataBytes - kShortFrameFirstByte) {
        return sumOfBytes<kShortFrameFirstByte>(frame, kDataBytes - kShortFrameFirstByte);
    }
    std::uint32_t result = 0;
    for (unsigned i = 0; i < frameBits && i / 8 < frame.size(); ++i) {
        if (bit(frame, i)) result ^= markOf(offsetOf(frameBits) + i);
    }
    return result;
}

std::optional<unsigned> findBit(std::uint32_t syndrome, unsigned frameBits) {
    if (syndrome == 0) {
        auto const position = firstParityBit(frameBits);
        return position < frameBits ? std::optional(position) : std::nullopt;
    }
    auto const* damage = findDamage(syndrome, frameBits);
    if (!damage || damage->second != DamageTable::kNoBit) return {};
    return damage->first - offsetOf(frameBits);
}

std::optional<std::pair<unsigned, unsigned>> findPair(std::uint32_t syndrome, unsigned frameBits) {
    auto const parityBit = firstParityBit(frameBits);
    if (syndrome == 0) { // two bits that leave no mark
        return parityBit + 1 < frameBits ? std::optional(std::pair(parityBit, parityBit + 1)) : std::nullopt;
    }
    auto const* damage = findDamage(syndrome, frameBits);
    if (!damage) return {};
    auto const first = damage->first - offsetOf(frameBits);
    if (damage->second != DamageTable::kNoBit) return {{first, damage->second - offsetOf(frameBits)}};
    // one bit explains it all: together with one that leaves no mark
    return parityBit < frameBits ? std::optional(std::pair(first, parityBit)) : std::nullopt;
}

} // namespace quorvel::modes::parity
