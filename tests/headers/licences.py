# SPDX-License-Identifier: MIT
"""licences.py: every source, script and build file names its licence in its first three lines. Prints those that do not;
exits 1 if there is one."""
import pathlib
import re
import subprocess
import sys

# what has no room for a comment, or is text and data
WITHOUT = re.compile(r"""(^|/)(\.[^/]*|LICENSE|changelog|copyright\.in|usage|py\.typed)$
                         |\.(md|txt|json|csv|svg|beast|avr|symbols|abi|in|allow)$""", re.X)
BUILD = re.compile(r"(^|/)CMakeLists\.txt$")

tracked = subprocess.run(["git", "ls-files"], check=True, capture_output=True, text=True).stdout.splitlines()
nameless = [name for name in tracked if (BUILD.search(name) or not WITHOUT.search(name))
            and "SPDX-License-Identifier: MIT" not in "".join(pathlib.Path(name).read_text().splitlines(True)[:3])]
for name in nameless:
    print(f"{name} does not name its licence")
sys.exit(1 if nameless else 0)
