# SPDX-License-Identifier: MIT
"""standards_truth_test.py PROGRAM SAMPLE RECORDINGS ACCEPTED: `decode --jsonl` against what recorded frames say by the
standards, value by value, and `decode --jsonl --tracked` against the positions and registers of the same recordings.

RECORDINGS/standard holds the truth; without it the test is skipped and says so. ACCEPTED lists the differences that are
accepted, each kind with its reason and clause. Prints each fault and the figures of each recording; exits 1 if there is
a fault, 77 if it was skipped."""
import gzip
import itertools
import json
import math
import pathlib
import subprocess
import sys

PROGRAM = sys.argv[1]
RECORDINGS, ACCEPTED = map(pathlib.Path, sys.argv[3:5])
TRUTH = RECORDINGS / "standard"
EARTH_METRES = 6371000.0
MOST_METRES = 10.0
ROUNDING = 1e-6
SKIPPED = 77
MOST_EXAMPLES = 20

# The recording of each set that has times, and what is asked of its positions besides.
SETS = {
    "comm_b_2017": ("comm_b_2017_mlat.avr",),
    "df24": ("df24.avr",),
    "europe_unordered": ("europe_unordered.avr",),
    "flight_406b90": ("flight_406b90_mlat.avr",),
    "flight_4c01e4": ("flight_4c01e4_mlat.avr",),
    "flights_us_2025": ("flights_us_2025_mlat.avr", "--location", "33.9,-84.4"),
    "iq_modes1": ("iq_modes1_mlat.avr",),
    "mixed_formats": ("mixed_formats.avr", "--location", "34.7,32.6", "--interval", "0.16"),
    "opensky_df17_df18": ("opensky_df17_df18.avr", "--location", "50.2,9.2", "--interval", "0.045"),
    "petersburg": ("petersburg.beast",),
    "receiver_log_12mhz": ("receiver_log_12mhz.avr",),
    "receiver_session": ("receiver_session_mlat.avr",),
    "receiver_session_damaged": ("receiver_session_damaged_mlat.avr", "--location", "53.2,-8.7"),
    "small_12mhz": ("small_12mhz.beast",),
}

faults = 0


def fault(text):
    global faults
    faults += 1
    if faults <= MOST_EXAMPLES:
        print(f"FAILED: {text}")


def accepted_differences():
    """By "fields" and "tracked", each kind with what may differ."""
    kinds = json.loads(ACCEPTED.read_text())
    for kind in [*kinds["fields"], *kinds["tracked"]]:
        if not kind["reason"] or not kind["clause"]:
            fault(f"{kind['name']} is accepted without a reason and a clause")
    return kinds


def ours(name, *options):
    """Our lines of a recording."""
    command = [PROGRAM, "decode", "--jsonl", *options, RECORDINGS / name]
    with subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL) as process:
        for line in process.stdout:
            yield json.loads(line)
    if process.returncode not in (0, 1):  # 1: lines of the recording that are no frames
        fault(f"{name}: exit status {process.returncode}")


def truth_of(path):
    with gzip.open(path, "rt", encoding="utf-8") as file:
        for line in file:
            yield json.loads(line)


def is_same(value, expected):
    is_number = [isinstance(each, (int, float)) and not isinstance(each, bool) for each in (value, expected)]
    return abs(value - expected) <= ROUNDING if all(is_number) else value == expected and type(value) is type(expected)


def is_accepted(name, frame, kinds):
    return any(name in kind["names"] and all(frame.get(key) == value for key, value in kind["of"].items())
               for kind in kinds)


def differences(frame, expected, kinds):
    for name, value in expected.items():
        if name not in frame:
            yield f"{name} is missing"
        elif not is_same(frame[name], value):
            yield f"{name} is {frame[name]}, not {value}"
    for name in frame.keys() - expected.keys():
        if not is_accepted(name, frame, kinds):
            yield f"{name} is {frame[name]}, and should not be there"


def compare_fields(name, path, kinds):
    values = 0
    for frame, expected in itertools.zip_longest(ours(SETS[name][0]), truth_of(path), fillvalue={}):
        values += len(expected)
        for difference in differences(frame, expected, kinds):
            fault(f"{name} frame {expected.get('i')} {expected.get('hex')}: {difference}")
    print(f"{name}: {values} values")


def metres(one, other):
    """Between two places that are near each other."""
    north = math.radians(one["latitude"] - other["latitude"])
    east = math.radians(math.remainder(one["longitude"] - other["longitude"], 360))
    return EARTH_METRES * math.hypot(north, east * math.cos(math.radians(one["latitude"])))


def compare_tracked_line(name, line, expected):
    where = f"{name} frame {line['i']}"
    if "latitude" in expected and "latitude" in line:
        away = metres(line, expected)
        if away > MOST_METRES:
            fault(f"{where}: {away:.0f} m away from {expected}, at {line}")
    for key in expected.keys() - {"latitude", "longitude", "src"}:
        if key not in line or not is_same(line[key], expected[key]):
            fault(f"{where}: {key} is {line.get(key)}, not {expected[key]}")
    for key in line.keys() - expected.keys():
        fault(f"{where}: {key} is {line[key]}, and should not be there")


def require_accepted(name, what, frames, kinds):
    accepted = sum(kind.get(what, 0) for kind in kinds if kind["set"] == name)
    if len(frames) != accepted:
        fault(f"{name}: {len(frames)} {what}, not {accepted}: {sorted(frames)[:5]}")


def compare_tracked(name, path, kinds):
    recording, *options = SETS[name]
    found = {line["i"]: line for line in ours(recording, "--tracked", *options)}
    expected = {line["i"]: line for line in truth_of(path)}
    for number in sorted(found.keys() & expected.keys()):
        compare_tracked_line(name, found[number], expected[number])
    for what, key in (("positions", "latitude"), ("registers", "bds")):
        mine, theirs = ({i for i, line in lines.items() if key in line} for lines in (found, expected))
        print(f"{name}: {len(theirs)} {what}, {len(theirs - mine)} missing, {len(mine - theirs)} extra")
        require_accepted(name, f"missing {what}", theirs - mine, kinds)
        require_accepted(name, f"extra {what}", mine - theirs, kinds)


def main():
    if not TRUTH.is_dir():
        print(f"skipped: there is no truth in {TRUTH}")
        sys.exit(SKIPPED)
    kinds = accepted_differences()
    for path in sorted(TRUTH.glob("*.fields.jsonl.gz")):
        compare_fields(path.name.split(".")[0], path, kinds["fields"])
    for path in sorted(TRUTH.glob("*.tracked.jsonl.gz")):
        compare_tracked(path.name.split(".")[0], path, kinds["tracked"])
    sys.exit(1 if faults else 0)


main()
