// SPDX-License-Identifier: MIT
#include "terminal/keys.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace quorvel::terminal {

namespace {

constexpr char kEscape = '\x1B';

struct Sequence {
    std::string_view bytes; // after the escape byte and the one that introduces the sequence
    Key::Kind kind;
};

constexpr Sequence kSequences[] = {
    {"A", Key::Kind::Up},
    {"B", Key::Kind::Down},
    {"5~", Key::Kind::PageUp},
    {"6~", Key::Kind::PageDown},
    {"H", Key::Kind::Home},
    {"1~", Key::Kind::Home},
    {"7~", Key::Kind::Home},
    {"F", Key::Kind::End},
    {"4~", Key::Kind::End},
    {"8~", Key::Kind::End},
};

bool isPrintable(char byte) { return byte >= 0x20 && byte < 0x7F; }

// Of a sequence that starts with the escape byte: its length, 0 while it is not whole.
std::size_t sequenceLength(std::string_view bytes) {
    bool const isIntroduced = bytes.size() > 1 && (bytes[1] == '[' || bytes[1] == 'O');
    if (!isIntroduced) return bytes.size() > 1 ? 1 : 0; // the key itself, and others after it
    auto const isFinal = [](char byte) { return byte >= 0x40 && byte <= 0x7E; };
    auto const* const end = std::find_if(bytes.begin() + 2, bytes.end(), isFinal);
    return end == bytes.end() ? 0 : static_cast<std::size_t>(end - bytes.begin()) + 1;
}

std::optional<Key> keyOfSequence(std::string_view sequence) {
    if (sequence.size() == 1) return Key{Key::Kind::Escape};
    for (auto const& known : kSequences) {
        if (known.bytes == sequence.substr(2)) return Key{known.kind};
    }
    return {};
}

std::optional<Key> keyOfByte(char byte) {
    switch (byte) {
    case '\r':
    case '\n': return Key{Key::Kind::Enter};
    case '\b':
    case '\x7F': return Key{Key::Kind::Backspace};
    case '\f': return Key{Key::Kind::Redraw};
    default: break;
    }
    if (isPrintable(byte)) return Key{Key::Kind::Character, byte};
    return {};
}

} // namespace

std::vector<Key> takeKeys(std::string& bytes, bool isAll) {
    std::vector<Key> keys;
    std::string_view rest = bytes;
    while (!rest.empty()) {
        bool const isSequence = rest.front() == kEscape;
        auto length = isSequence ? sequenceLength(rest) : 1;
        if (length == 0 && !isAll) break;
        if (length == 0) length = 1;
        auto const key = isSequence ? keyOfSequence(rest.substr(0, length)) : keyOfByte(rest.front());
        if (key) keys.push_back(*key);
        rest.remove_prefix(length);
    }
    bytes.erase(0, bytes.size() - rest.size());
    return keys;
}

} // namespace quorvel::terminal
