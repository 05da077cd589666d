#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs two builds of the benchmarks in turn and prints how their costs compare.

Usage: compare.py [--rounds N] NEW OLD [BENCHMARK_ARGUMENT...]. The two programs take turns (new, old, new, old, ...),
so that whatever else the machine does meets both. A ratio below 1 says that the new one is faster; it is the ratio of
the medians, and its spread is that of the ratios of each round.
"""

import argparse
import os
import subprocess
import sys
import tempfile
from statistics import median

from results import cost, read_runs, written


def run(program, arguments):
    """Each benchmark's run, of one run of a program."""
    with tempfile.NamedTemporaryFile(suffix=".json") as out:
        command = [program, "--benchmark_min_time=0.05", *arguments, "--benchmark_repetitions=1",
                   f"--benchmark_out={out.name}", "--benchmark_out_format=json"]
        done = subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True, check=False)
        if done.returncode != 0 or os.path.getsize(out.name) == 0:
            raise SystemExit(f"{program} failed:\n{done.stderr}")
        return {name: runs[0] for name, runs in read_runs(out.name).items()}


def print_ratios(rounds):
    print(f"{'benchmark':44}{'new':>10}{'old':>10}{'ratio':>8}   spread")
    for name, first in rounds[0][0].items():
        if any(name not in runs for pair in rounds for runs in pair):
            print(f"{name:44}  not in both")
            continue
        new, old = ([cost(runs[name]) for runs in side] for side in zip(*rounds))
        ratios = [a / b for a, b in zip(new, old)]
        print(f"{name:44}{written(first, median(new)):>10}{written(first, median(old)):>10}"
              f"{median(new) / median(old):>8.3f}   {min(ratios):.3f} .. {max(ratios):.3f}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("new")
    parser.add_argument("old")
    options, arguments = parser.parse_known_args()
    rounds = []
    for number in range(options.rounds):
        print(f"round {number + 1} of {options.rounds}", file=sys.stderr)
        rounds.append((run(options.new, arguments), run(options.old, arguments)))
    print_ratios(rounds)


if __name__ == "__main__":
    main()
