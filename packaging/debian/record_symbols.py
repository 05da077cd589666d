# SPDX-License-Identifier: MIT
"""record_symbols.py LIBRARY: brings the record of the shared library's symbols up to date: a new symbol is there
since its version, one that is gone is taken off the record. Symbols are recorded as C++ names them."""
import pathlib
import re
import subprocess
import sys

LIBRARY = pathlib.Path(sys.argv[1]).resolve()
VERSION = LIBRARY.name.partition(".so.")[2]
RECORD = pathlib.Path(__file__).parent / "libtrevallo1.symbols"

head, *lines = RECORD.read_text(encoding="utf-8").splitlines()
since = dict(re.match(r' \(c\+\+\)"(.*)@Base" (.*)', line).groups() for line in lines)
exported = subprocess.run(["nm", "-D", "--defined-only", "--format=just-symbols", LIBRARY], capture_output=True, check=True)
names = subprocess.run(["c++filt"], input=exported.stdout, capture_output=True, check=True).stdout.decode().splitlines()
RECORD.write_text("\n".join([head] + [f' (c++)"{name}@Base" {since.get(name, VERSION)}' for name in sorted(set(names))]) + "\n",
                  encoding="utf-8")
