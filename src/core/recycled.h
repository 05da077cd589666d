// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <utility>

namespace quorvel::modes {

// Records and messages come and go by the million: a thread reuses what it has released, instead of going through the
// general allocator, which cost a third of the time of a frame. A thread keeps a limited amount, and nothing beyond its
// end. Objects may be released on any thread, also after the end of its thread-local ones.

#if defined(__SANITIZE_ADDRESS__)
#define TREVALLO_RECYCLES 0 // recycled memory would hide a use after the release
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define TREVALLO_RECYCLES 0
#endif
#endif
#ifndef TREVALLO_RECYCLES
#define TREVALLO_RECYCLES 1
#endif

#if defined(__ELF__)
#define TREVALLO_FAST_THREAD_LOCAL [[gnu::tls_model("initial-exec")]]
#else
#define TREVALLO_FAST_THREAD_LOCAL
#endif

/// Blocks of memory of one size.
template <std::size_t Size> class RecycledBlocks {
public:
    static constexpr std::size_t kMost = 256 * 1024 / Size; // blocks that a thread keeps

    static void* take() {
        auto* const block = _kept.first;
        if (!block) return ::operator new(Size);
        _kept.first = block->next;
        --_kept.count;
        return block;
    }

    static void give(void* memory) noexcept {
        if (_kept.count == _kept.limit && !makeRoom()) return ::operator delete(memory);
        _kept.first = new (memory) Block{_kept.first};
        ++_kept.count;
    }

    /// Blocks that this thread keeps at the moment.
    static std::size_t kept() { return _kept.count; }

private:
    struct Block {
        Block* next;
    };
    static_assert(Size >= sizeof(Block));

    struct Kept {
        Block* first = nullptr;
        std::size_t count = 0;
        std::size_t limit = 0; // as long as nothing would empty it at the end of the thread, and after that
        bool ended = false;
    };

    struct AtThreadEnd {
        ~AtThreadEnd() {
            while (_kept.first) ::operator delete(take());
            _kept.limit = 0;
            _kept.ended = true;
        }
    };

    static bool makeRoom() noexcept {
        if (_kept.limit != 0 || _kept.ended) return false;
        static thread_local AtThreadEnd const atThreadEnd;
        static_cast<void>(&atThreadEnd);
        _kept.limit = TREVALLO_RECYCLES ? kMost : 0;
        return _kept.limit != 0;
    }

    TREVALLO_FAST_THREAD_LOCAL static thread_local constinit inline Kept _kept{};
};

/// The allocator for it.
template <class T> struct RecyclingAllocator {
    using value_type = T;

    RecyclingAllocator() = default;
    template <class Other> RecyclingAllocator(RecyclingAllocator<Other> const&) {}

    T* allocate(std::size_t count) {
        return static_cast<T*>(count == 1 ? Blocks::take() : ::operator new(count * sizeof(T)));
    }
    void deallocate(T* memory, std::size_t count) noexcept {
        count == 1 ? Blocks::give(memory) : ::operator delete(memory);
    }

    friend bool operator==(RecyclingAllocator const&, RecyclingAllocator const&) { return true; }

private:
    static_assert(alignof(T) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__);

    // a few sizes serve all classes
    static constexpr std::size_t kUnit = 64;
    using Blocks = RecycledBlocks<(sizeof(T) + kUnit - 1) / kUnit * kUnit>;
};

template <class T, class... Arguments> std::shared_ptr<T> makeRecycled(Arguments&&... arguments) {
    return std::allocate_shared<T>(RecyclingAllocator<T>(), std::forward<Arguments>(arguments)...);
}

} // namespace quorvel::modes
