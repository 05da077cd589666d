#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""make_vectors.py FOLDER: makes the test vectors frames.txt and payloads.txt, inputs and what must come of them.

The expected values are worked out here, from the rules, by code that shares nothing with the library.

A vector is a line with its input and indented lines with what is expected, in a fixed order:

    frame HEX               one frame for the reply class of its downlink format
    payload HEX VERSION     one ME payload for a transmitter of this version (3 is unknown)
      none                  no message results
      class NAME, valid, parity, address, description, value NAME VALUE, field NAME POSITION WIDTH TEXT
      log LEVEL MODULE TEXT

Bytes that are no printable characters stand as \\xNN.
"""
import pathlib
import sys

from frame_vectors import frame_vectors
from payload_vectors import payload_vectors
from vector_text import vectors_text


def main(folder):
    for name, vectors in (("frames.txt", frame_vectors()), ("payloads.txt", payload_vectors())):
        pathlib.Path(folder, name).write_text(vectors_text(vectors), encoding="ascii")


if __name__ == "__main__":
    main(*sys.argv[1:])
