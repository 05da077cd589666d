# SPDX-License-Identifier: MIT
"""Reads what Google Benchmark writes as JSON."""

import json

NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


BYTES = "bytes_per_aircraft"


def cost(run):
    """Nanoseconds of one item where the benchmark counts items, else of one call; bytes where it measures memory."""
    if BYTES in run:
        return run[BYTES]
    if "items_per_second" in run:
        return 1e9 / run["items_per_second"]
    return run["cpu_time"] * NANOSECONDS[run["time_unit"]]


def written(run, value):
    """A cost of such a run, with the unit that suits it."""
    if BYTES in run:
        return f"{value:.0f} B"
    for unit, factor in (("ms", 1e6), ("us", 1e3)):
        if value >= factor:
            return f"{value / factor:.3g} {unit}"
    return f"{value:.3g} ns"


def read_runs(path):
    """The runs of each benchmark, in the order of their repetitions."""
    with open(path, encoding="utf-8") as file:
        benchmarks = json.load(file)["benchmarks"]
    runs = {}
    for run in benchmarks:
        if run["run_type"] != "iteration":
            continue
        if run.get("error_occurred"):
            raise SystemExit(f"{run['run_name']}: {run['error_message']}")
        runs.setdefault(run["run_name"], []).append(run)
    for repetitions in runs.values():
        repetitions.sort(key=lambda run: run["repetition_index"])
    return runs
