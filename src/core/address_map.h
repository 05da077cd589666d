// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace quorvel::modes {

/// A map from 32-bit addresses to values in one block of memory, found with one probe more often than not:
/// every frame is looked up in it. It keeps no order.
template <class Value> class AddressMap {
public:
    std::size_t size() const { return _size; }

    /// The value of the address, null when there is none. Any change of the map, other than of a value itself,
    /// invalidates the pointer.
    Value* find(std::uint32_t address) {
        return const_cast<Value*>(static_cast<AddressMap const*>(this)->find(address));
    }
    Value const* find(std::uint32_t address) const {
        if (_slots.empty()) return nullptr;
        auto const& slot = _slots[slotOf(address)];
        return slot.used ? &slot.value : nullptr;
    }

    /// Fetches from memory what a look-up of the address reads.
    void prefetch(std::uint32_t address) const {
        if (!_slots.empty()) __builtin_prefetch(&_slots[homeOf(address)]);
    }

    /// The value of the address, created if there is none.
    Value& operator[](std::uint32_t address) {
        if (_slots.empty()) rehash(kFirstSlots);
        auto at = slotOf(address);
        if (!_slots[at].used) {
            if (isFull()) {
                rehash(2 * _slots.size());
                at = slotOf(address);
            }
            _slots[at].address = address;
            _slots[at].used = true;
            ++_size;
        }
        return _slots[at].value;
    }

    /// Whether the next new address makes the map grow.
    bool isFull() const { return 2 * (_size + 1) > _slots.size(); }

    bool erase(std::uint32_t address) {
        if (_slots.empty()) return false;
        auto hole = slotOf(address);
        if (!_slots[hole].used) return false;
        // those that found the slot taken and went on to the next move up, so that they are found again
        for (auto at = next(hole); _slots[at].used; at = next(at)) {
            auto const home = homeOf(_slots[at].address);
            if (((at - home) & mask()) < ((at - hole) & mask())) continue;
            _slots[hole] = std::move(_slots[at]);
            hole = at;
        }
        _slots[hole] = Slot();
        --_size;
        return true;
    }

    /// Erases the entries for which `isStale(value)` holds. Leaves room for as many new ones as remain, so
    /// that it pays whenever the map is full: the memory follows what is kept.
    template <class IsStale> void eraseIf(IsStale const& isStale) {
        for (auto& slot : _slots) {
            if (slot.used && isStale(slot.value)) {
                slot.used = false; // rehashing fixes unreachable neighbours
                --_size;
            }
        }
        auto slots = kFirstSlots;
        while (slots < 4 * _size) slots *= 2;
        rehash(slots);
    }

    /// The addresses, in ascending order.
    std::vector<std::uint32_t> addresses() const {
        std::vector<std::uint32_t> addresses;
        addresses.reserve(_size);
        for (auto const& slot : _slots) {
            if (slot.used) addresses.push_back(slot.address);
        }
        std::sort(addresses.begin(), addresses.end());
        return addresses;
    }

    void clear() {
        _slots.clear();
        _size = 0;
    }

private:
    struct Slot {
        Value value{};
        std::uint32_t address = 0;
        bool used = false;
    };

    static constexpr std::size_t kFirstSlots = 64; // always a power of two

    std::size_t mask() const { return _slots.size() - 1; }
    std::size_t next(std::size_t slot) const { return (slot + 1) & mask(); }

    // Where the address would be if it were alone.
    std::size_t homeOf(std::uint32_t address) const {
        return static_cast<std::size_t>(address * _multiplier >> 32) & mask();
    }

    // The slot of the address, or the free one where it belongs. There always is one: the map is half empty.
    std::size_t slotOf(std::uint32_t address) const {
        auto slot = homeOf(address);
        while (_slots[slot].used && _slots[slot].address != address) slot = next(slot);
        return slot;
    }

    void rehash(std::size_t slots) {
        auto old = std::exchange(_slots, std::vector<Slot>(slots));
        // Anyone may send any address: where they go depends on where the memory happens to be, so that nobody can
        // choose addresses that all go to one place.
        auto const place = reinterpret_cast<std::uintptr_t>(_slots.data());
        _multiplier = std::uint64_t{0x9E3779B97F4A7C15} * (2 * (place >> 4) + 1);
        for (auto& slot : old) {
            if (slot.used) _slots[slotOf(slot.address)] = std::move(slot);
        }
    }

    std::vector<Slot> _slots;
    std::size_t _size = 0;
    std::uint64_t _multiplier = 1; // odd
};

} // namespace quorvel::modes
