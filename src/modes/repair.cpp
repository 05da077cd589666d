// SPDX-License-Identifier: MIT
#include "modes/repair.h"

#include "modes/parity_marks.h"

#include <array>

namespace quorvel::modes::repair {

using parity::kDataBits;
using parity::kMarks;
using parity::offsetOf;

namespace {

// What one or two damaged data bits do to the remainder, looked up by what they did. No two of these cases
// look the same: the code detects up to five damaged bits.
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

} // namespace

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

void invertBit(std::string& frame, unsigned position) {
    auto& byte = frame[position / 8];
    byte = static_cast<char>(static_cast<unsigned char>(byte) ^ 0x80U >> position % 8);
}

} // namespace quorvel::modes::repair
