#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""vtables.py   compares the virtual tables of the public headers, as g++ lays them out, with those of vtables.txt."""
import pathlib
import re
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
INCLUDE = HERE.parent.parent / "include"

# Slots of abstract functions have no name: what each class shows is what it or its bases define. That of the handler
# of the log, which defines nothing, shows here.
SOURCE = """#include <modes/modes.h>
namespace quorvel::modes {
class LogHandlerOfAHost : public LogHandler { void handle(Log::Level, std::string const&) override {} };
}
"""
DESTRUCTOR, UNNAMED = "~", "?"


def recorded():
    """Class -> slots."""
    tables, slots = {}, []
    for line in (HERE / "vtables.txt").read_text().splitlines():
        words = line.split("#")[0].split()
        if line.startswith(" "):
            tables.update((name, slots) for name in words)
        elif words:
            slots = words
    return {**tables, "LogHandlerOfAHost": tables["LogHandler"]}


def slot_of(entry):
    """The function of an entry of a table: "56    (int (*)(...))quorvel::modes::DF0Message::bits"."""
    name = entry.rsplit("::", 1)[-1]
    if name.startswith("~"):
        return DESTRUCTOR
    return name if "::" in entry else UNNAMED


def laid_out():
    """Class -> slots, as the compiler makes them."""
    with tempfile.TemporaryDirectory() as folder:
        dump = pathlib.Path(folder, "classes")
        subprocess.run(["g++", "-std=c++17", f"-I{INCLUDE}", "-x", "c++", "-fsyntax-only", f"-fdump-lang-class={dump}", "-"],
                       input=SOURCE, text=True, check=True)
        tables = re.findall(r"^Vtable for quorvel::modes::(\w+)\n.*\n((?:\d+ .*\n)+)", dump.read_text(), re.MULTILINE)
    entries_before = 2  # the offset to the whole object, the type
    return {name: [slot_of(entry) for entry in entries.splitlines()[entries_before:]] for name, entries in tables}


def fits(made, slots):
    return len(made) == len(slots) and all(one in (other, UNNAMED) for one, other in zip(made, slots))


record, tables = recorded(), laid_out()
faults = [f"{name} has {' '.join(tables[name])}, not {' '.join(record[name])}"
          for name in record.keys() & tables.keys() if not fits(tables[name], record[name])]
faults += [f"{name} has no virtual table" for name in record.keys() - tables.keys()]
faults += [f"{name} is not in the record" for name in tables.keys() - record.keys()]
for fault in sorted(faults):
    print(f"virtual tables: {fault}", file=sys.stderr)
sys.exit(1 if faults else 0)
