#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The committed inputs of the fuzzers: one file for each target, a line "NAME HEXADECIMAL" for each input.

    corpus.py unpack FILE FOLDER      makes FOLDER hold the inputs of FILE, each in a file of its name, and nothing else
    corpus.py add FILE INPUT...       adds inputs, named by their SHA-1; an input that is there already is not added again
"""
import hashlib
import pathlib
import re
import sys

NAME = re.compile(r"[0-9a-z_]+")


def read(packed):
    """{name: bytes} of a packed file; empty when there is no such file."""
    inputs = {}
    text = packed.read_text(encoding="ascii") if packed.exists() else ""
    for number, line in enumerate(text.splitlines(), 1):
        name, _, digits = line.partition(" ")
        if not NAME.fullmatch(name) or name in inputs:
            sys.exit(f"{packed}:{number}: '{name}' is no name of an input, or that of another one too")
        inputs[name] = bytes.fromhex(digits)
    return inputs


def write(packed, inputs):
    """In the order of the names, so that the same inputs make the same file."""
    lines = (f"{name} {content.hex().upper()}".rstrip() + "\n" for name, content in sorted(inputs.items()))
    packed.write_text("".join(lines), encoding="ascii")


def unpack(packed, folder):
    inputs = read(packed)
    if not inputs:
        sys.exit(f"{packed}: no inputs")
    folder.mkdir(parents=True, exist_ok=True)
    for path in folder.iterdir():
        if path.name not in inputs:
            path.unlink()
    for name, content in inputs.items():
        (folder / name).write_bytes(content)


def add(packed, files):
    inputs = read(packed)
    for file in files:
        content = file.read_bytes()
        if content not in inputs.values():
            inputs[hashlib.sha1(content).hexdigest()] = content
    write(packed, inputs)


def main(verb=None, *paths):
    paths = [pathlib.Path(path) for path in paths]
    if verb == "unpack" and len(paths) == 2:
        unpack(*paths)
    elif verb == "add" and len(paths) >= 2:
        add(paths[0], paths[1:])
    else:
        sys.exit(__doc__)


if __name__ == "__main__":
    main(*sys.argv[1:])
