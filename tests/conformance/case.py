# SPDX-License-Identifier: MIT
"""The cases of the conformance set."""


class Cases(list):
    """Cases with numbers of their own, which begin with a letter."""

    def __init__(self, letter):
        super().__init__()
        self._letter = letter

    def add(self, kind, frames, expect, **more):
        """`frames` is the hexadecimal text of one, or a list; of `more`, what is None is left out."""
        case = {"id": f"{self._letter}{len(self) + 1:05}", "kind": kind,
                "hex": [frames] if isinstance(frames, str) else frames}
        case.update((name, value) for name, value in more.items() if value is not None)
        case["expect"] = expect
        self.append(case)
