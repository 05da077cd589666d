#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Compares measured costs with the goals and prints the table.

Usage: goals.py RESULTS, the JSON of a run of all benchmarks with repetitions. A value is made of the medians of the
repetitions, its spread is that of the value made of each repetition. U is the benchmark "unit".
"""

import argparse
import operator
from dataclasses import dataclass
from statistics import median
from typing import Callable

from results import cost, read_runs, written


@dataclass
class Goal:
    """What must hold of a value that is made of benchmarks."""

    name: str
    benchmarks: list  # that the value is made of, in the order of its arguments
    value: Callable
    limit: float
    text: str = "{:.2f}"  # how to write value and limit
    holds: Callable = operator.le


def in_units(name, benchmark, limit):
    return Goal(name, [benchmark, "unit"], lambda frame, unit: frame / unit, limit, "{:.2f} U")


def ratio(name, benchmark, base, limit):
    return Goal(name, [benchmark, base], lambda a, b: a / b, limit, "{:.2f} x")


def speedup(name, benchmark, base, limit):
    return Goal(name, [benchmark, base], lambda a, b: b / a, limit, "{:.2f} x", operator.ge)


def microseconds(name, benchmark, limit):
    return Goal(name, [benchmark], lambda time: time / 1e3, limit, "{:.3g} us")


GOALS = [
    in_units("end to end, 200 aircraft", "road/beast/200", 6),
    in_units("end to end, 4000 aircraft", "road/beast/4000", 8),
    ratio("growth from 200 to 4000 aircraft", "road/beast/4000", "road/beast/200", 1.35),
    ratio("AVR text against Beast, 200 aircraft", "road/avr/200", "road/beast/200", 1.4),
    ratio("AVR text against Beast, 4000 aircraft", "road/avr/4000", "road/beast/4000", 1.4),
    in_units("unrepairable extended squitter", "noise/unrepairable", 15),
    ratio("1,000,000 garbage addresses against 200", "noise/addresses/1000000", "noise/addresses/200", 1.2),
    Goal("memory of one target", ["memory/target"], lambda size: size, 1600, "{:.0f} B"),
    speedup("two threads", "threads/2/manual_time", "threads/1/manual_time", 1.9),
    in_units("bytes to aircraft, 200 aircraft", "sky/200", 3.3),
    in_units("bytes to aircraft, 4000 aircraft", "sky/4000", 4.5),
    in_units("bytes to aircraft, 20,000 aircraft", "sky/20000", 6.5),
    in_units("bytes to aircraft, 100,000 aircraft", "sky/100000", 10),
    ratio("1,000,000 forged addresses against 200", "sky/forged/1000000", "sky/forged/200", 1.1),
    Goal("memory of one aircraft", ["memory/aircraft/100000"], lambda size: size, 1024, "{:.0f} B"),
    in_units("reading of a squitter", "read/squitter", 1),
    in_units("reading of a Comm-B reply, its register chosen", "read/comm_b", 2.5),
    microseconds("report of a target", "target/report", 1),
    microseconds("page of a report", "target/page", 25),
    microseconds("10 changed of 4000 targets", "targets/changed_10_of_4000", 10),
]

QUIET = 0.95  # share of a processor


def measured(goal, runs):
    """The value of a goal by the medians, and by each repetition."""
    samples = [list(map(cost, runs[name])) for name in goal.benchmarks]
    return goal.value(*map(median, samples)), [goal.value(*repetition) for repetition in zip(*samples)]


def cost_of(goal, runs):
    """The cost that the value is made of, and how many items there are in a second."""
    first = runs[goal.benchmarks[0]]
    value = median(map(cost, first))
    return written(first[0], value) + (f", {1e3 / value:.2f} M/s" if "items_per_second" in first[0] else "")


def row(goal, runs):
    value, each = measured(goal, runs)
    spread = " .. ".join(goal.text.format(end).split()[0] for end in (min(each), max(each)))
    bound = ("at most " if goal.holds is operator.le else "at least ") + goal.text.format(goal.limit)
    verdict = "met" if goal.holds(value, goal.limit) else "NOT met"
    return goal.name, cost_of(goal, runs), goal.text.format(value), spread, bound, verdict


def print_table(rows):
    widths = [max(map(len, column)) for column in zip(*rows)]
    for cells in rows:
        print("  ".join(cell.ljust(width) for cell, width in zip(cells, widths)).rstrip())


def share_of_processor(runs):
    """How much of a processor the benchmarks had. Other programs take not only time from them but also caches."""
    own = [run for repetitions in runs.values() for run in repetitions if "manual_time" not in run["run_name"]]
    return sum(run["cpu_time"] / run["real_time"] for run in own) / len(own)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("results")
    runs = read_runs(parser.parse_args().results)
    missing = sorted({name for goal in GOALS for name in goal.benchmarks} - runs.keys())
    if missing:
        print("No table of goals without", ", ".join(missing))
        return
    unit = [cost(run) for run in runs["unit"]]
    print(f"U = {median(unit):.1f} ns ({min(unit):.1f} .. {max(unit):.1f}), medians of {len(unit)} repetitions")
    share = share_of_processor(runs)
    print(f"The benchmarks had {share:.0%} of a processor"
          + ("" if share > QUIET else ": the machine is too busy for the figures of 4000 aircraft") + ".\n")
    print_table([("goal", "cost", "value", "spread", "wanted", "verdict")] + [row(goal, runs) for goal in GOALS])


if __name__ == "__main__":
    main()
