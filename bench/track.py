#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Compares the program's throughput with that of the library's own road.

Usage: track.py [--rounds N] TREVALLO ROAD STREAMS. TREVALLO is the program, which tracks a Beast recording with doubled
escapes and shows nothing; ROAD is the program trevallo_road, which takes the same traffic without escapes down the road;
STREAMS is its folder of streams. The two take turns, so that whatever else the machine does meets both. Time is that of
the processor, reading the file included. Exit status 1 when the program has less than 80 % of the road's throughput.
"""

import argparse
import json
import os
import resource
import subprocess
from pathlib import Path
from statistics import median

WANTED = 0.8
TRAFFIC = ["--mix", "adsb", "--aircraft", "200", "--seconds", "800", "--bit-errors", "0.05", "--seed", "7"]
PLAIN, DOUBLED = "track.beast", "track_doubled.beast"


def make_stream(trevallo, path, encoding):
    """Made once. A stream appears under its name when it is whole."""
    if path.exists():
        return
    fresh = path.with_suffix(".new")
    subprocess.run([trevallo, "simulate", *TRAFFIC, "--format", encoding, "--output", fresh], check=True)
    os.replace(fresh, path)


def processor_seconds(command):
    """What a run costs, and what it prints."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    printed = subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime, printed


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--rounds", type=int, default=7)
    parser.add_argument("trevallo")
    parser.add_argument("road")
    parser.add_argument("streams", type=Path)
    options = parser.parse_args()
    make_stream(options.trevallo, options.streams / PLAIN, "beast-plain")
    make_stream(options.trevallo, options.streams / DOUBLED, "beast")

    rounds = []
    for _ in range(options.rounds):
        road, printed = processor_seconds([options.road, PLAIN])
        track, _ = processor_seconds([options.trevallo, "track", "--table", "none", "--log", "none",
                                      options.streams / DOUBLED])
        rounds.append((road, track))
    frames = json.loads(printed)["frames"]
    road, track = (median(times) for times in zip(*rounds))
    ratios = [one / other for one, other in rounds]
    print(f"the library's road  {frames / road / 1e6:6.3f} M frames/s")
    print(f"trevallo track      {frames / track / 1e6:6.3f} M frames/s")
    print(f"ratio               {median(ratios):6.3f} ({min(ratios):.3f} .. {max(ratios):.3f}), "
          f"wanted at least {WANTED}")
    if median(ratios) < WANTED:
        raise SystemExit("trevallo track is too slow")


if __name__ == "__main__":
    main()
