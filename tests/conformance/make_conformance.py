#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""make_conformance.py FILE: makes the conformance set, frames and what they say by the standards, one case a line.

Frames and expected values are worked out here, from the rules, by code that shares nothing with the library. README.md
beside this file tells what a line holds.
"""
import json
import sys

from integrity_cases import integrity_cases
from position_cases import position_cases
from register_cases import register_cases
from reply_cases import reply_cases
from squitter_cases import squitter_cases
from status_cases import status_cases


def main(path):
    with open(path, "w", encoding="ascii") as file:
        for make in (reply_cases, squitter_cases, status_cases, integrity_cases, register_cases, position_cases):
            for case in make():
                file.write(json.dumps(case, separators=(",", ":")) + "\n")


if __name__ == "__main__":
    main(*sys.argv[1:])
