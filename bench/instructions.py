#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Counts the instructions of a frame on its whole road and compares them with the recorded figure.

Usage: instructions.py [--record] ROAD FOLDER. ROAD is the program trevallo_road, FOLDER takes what callgrind writes.
The count does not depend on how busy the machine is. Exit status 1 when it is more than 3 % over the record, or
when the record is of another stream. --record makes the count the record.
"""

import argparse
import json
import os
import re
import subprocess
import sys
from pathlib import Path

RECORD = Path(__file__).with_name("instructions.json")
STREAM = "aircraft_200.beast"
TOLERANCE = 0.03

# Nothing may depend on the processor, nor on which call of a function is the first: the C library takes its plain
# variants, and symbols are bound at the start.
ENVIRONMENT = {
    "GLIBC_TUNABLES": "glibc.cpu.hwcaps=-AVX,-AVX2,-AVX_Fast_Unaligned_Load,-ERMS,-FMA,-FMA4,-SSE4_1,-SSSE3",
    "LD_BIND_NOW": "1",
}


def count(road, folder):
    """What the program says of its pass, and the instructions of a frame in it."""
    out = folder / "callgrind.out"
    command = ["valgrind", "--tool=callgrind", f"--callgrind-out-file={out}", "--toggle-collect=trevallo_road_pass",
               road, STREAM]
    done = subprocess.run(command, capture_output=True, text=True, check=False, env={**os.environ, **ENVIRONMENT})
    if done.returncode != 0:
        raise SystemExit(done.stderr)
    road_pass = json.loads(done.stdout)
    instructions = int(re.search(r"^totals: (\d+)", out.read_text(encoding="utf-8"), re.MULTILINE).group(1))
    if instructions == 0:
        raise SystemExit("nothing was counted: callgrind has not met trevallo_road_pass")
    return {"stream": STREAM, **road_pass, "instructions_per_frame": round(instructions / road_pass["frames"], 1)}


def compare(counted, recorded):
    """Prints how the count compares with the record; whether it is good enough."""
    if counted["compiler"] != recorded["compiler"]:
        print(f"The compiler is {counted['compiler']}, that of the record was {recorded['compiler']}.")
    if any(counted[key] != recorded[key] for key in ("stream", "frames")):
        print(f"The record is of {recorded['frames']} frames of {recorded['stream']}: record it again.")
        return False
    growth = counted["instructions_per_frame"] / recorded["instructions_per_frame"] - 1
    print(f"recorded {recorded['instructions_per_frame']:.1f}, now {growth:+.2%}, at most {TOLERANCE:+.0%}: "
          + ("NOT met" if growth > TOLERANCE else "met"))
    if growth < -TOLERANCE:
        print("The record is out of date: ./dev bench --instructions --record")
    return growth <= TOLERANCE


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--record", action="store_true")
    parser.add_argument("road")
    parser.add_argument("folder", type=Path)
    options = parser.parse_args()

    counted = count(options.road, options.folder)
    print(f"{counted['instructions_per_frame']:.1f} instructions per frame, {counted['frames']} frames, "
          f"{counted['compiler']}")
    if options.record:
        RECORD.write_text(json.dumps(counted, indent=4) + "\n", encoding="utf-8")
        return 0
    return 0 if compare(counted, json.loads(RECORD.read_text(encoding="utf-8"))) else 1


if __name__ == "__main__":
    sys.exit(main())
