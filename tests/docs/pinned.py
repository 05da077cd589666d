# SPDX-License-Identifier: MIT
"""pinned.py REPOSITORY: each behaviour that the page calls deliberate names tests that pin it, and there are such tests."""
import pathlib
import re
import sys

TEST = re.compile(r"^TEST(?:_[FP])?\((\w+), *(\w+)\)", re.M)
ENTRY = re.compile(r"^- \*\*.*?(?=^- |^#|\Z)", re.M | re.S)
PIN = re.compile(r"`([A-Z]\w+\.[A-Z]\w+)`")


def main():
    repository = pathlib.Path(sys.argv[1])
    tests = {f"{suite}.{name}" for file in (repository / "tests").rglob("*.cpp")
             for suite, name in TEST.findall(file.read_text(encoding="utf-8"))}
    entries = ENTRY.findall((repository / "docs/deliberate.md").read_text(encoding="utf-8"))

    faults = [f"pinned by no test: {entry.splitlines()[0]}" for entry in entries if not PIN.search(entry)]
    faults += [f"no test of this name: {pin}" for entry in entries for pin in PIN.findall(entry) if pin not in tests]
    if faults or not entries:
        sys.exit("docs/deliberate.md\n" + "\n".join(faults))


main()
