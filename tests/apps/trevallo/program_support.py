# SPDX-License-Identifier: MIT
"""What the tests that drive the built program have in common: the command line PROGRAM SAMPLE, runs of the program, and
expectations. Each fault is printed; `finish` ends with exit status 1 if there was one."""
import os
import subprocess
import sys

from patience import PATIENCE

PROGRAM, SAMPLE = sys.argv[1:3]
faults = 0


def run(*arguments, stdin=b"", env=None):
    return subprocess.run([PROGRAM, *map(str, arguments)], input=stdin, capture_output=True, timeout=PATIENCE,
                          env={**os.environ, **(env or {})})


def expect(what, condition, result):
    global faults
    if not condition:
        faults += 1
        print(f"FAILED: {what}\n  exit {result.returncode}\n  out {result.stdout[-600:]}\n  err {result.stderr[-600:]}")


def expect_failure(what, status, *arguments, stdin=b"", about=""):
    result = run(*arguments, stdin=stdin)
    lines = result.stderr.decode(errors="replace").splitlines()
    expect(what, result.returncode == status and len(lines) == 1 and lines[0].startswith("trevallo: ")
           and about in lines[0], result)


def finish():
    sys.exit(1 if faults else 0)
