# SPDX-License-Identifier: MIT
"""What the makers of frame and payload vectors have in common: bits of bytes, and the text of a file of vectors."""


def number(data, position, width):
    value = int.from_bytes(data, "big")
    return value >> (8 * len(data) - position - width) & ((1 << width) - 1)


def escaped(text):
    return "".join(c if " " <= c <= "~" else f"\\x{ord(c):02X}" for c in text)


def vectors_text(vectors):
    """The file of (name, input, expected lines), each input once."""
    seen, blocks = set(), []
    for name, given, expected in vectors:
        if given not in seen:
            seen.add(given)
            blocks.append("\n".join([f"# {name}", given] + [f"  {line}" for line in expected]))
    return "\n\n".join(blocks) + "\n"
