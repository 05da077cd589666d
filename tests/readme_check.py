# SPDX-License-Identifier: MIT
"""readme_check.py README EXAMPLE: the README's first C++ block is the example, less its licence line."""
import re
import sys

readme = open(sys.argv[1], encoding="utf-8").read()
example = open(sys.argv[2], encoding="utf-8").read()

blocks = re.findall(r"^```cpp\n(.*?)^```$", readme, re.M | re.S)
expected = example.split("\n", 1)[1]
if not blocks or blocks[0] != expected:
    sys.exit("README.md does not show the example as it is:\n" + (blocks[0] if blocks else "(no C++ block)"))
