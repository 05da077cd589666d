# SPDX-License-Identifier: MIT
"""Draws one flight of a recording: where it went, how high and how fast.

    python3 draw_flight.py data/sample.beast flight.png             # the flight with the most positions
    python3 draw_flight.py data/sample.beast flight.png SLM4767     # a flight by its callsign
"""
import argparse
import pathlib
from typing import Any

import matplotlib

matplotlib.use("Agg")  # draws to files, needs no screen
import matplotlib.dates
import matplotlib.pyplot as plt
import numpy
import numpy.typing

import trevallo

Frames = numpy.typing.NDArray[numpy.void]


def aircraft_of(frames: Frames, callsign: str) -> int:
    """The address of the aircraft with this callsign, or of the one with the most positions."""
    chosen = numpy.char.strip(frames["callsign"]) == callsign if callsign else numpy.isfinite(frames["latitude"])
    addresses, counts = numpy.unique(frames["icaoAddress"][chosen], return_counts=True)
    if not len(addresses):
        raise SystemExit(f"no aircraft {callsign} in this recording")
    return int(addresses[counts.argmax()])


def callsign_of(frames: Frames) -> str:
    named = frames["callsign"][frames["callsign"] != ""]
    return str(named[-1]).strip() if len(named) else f"{frames['icaoAddress'][0]:06X}"


def clock(time: numpy.datetime64) -> str:
    return str(time)[11:19]


def draw_track(axes: plt.Axes, frames: Frames) -> None:
    located = frames[numpy.isfinite(frames["latitude"])]
    if not len(located):
        raise SystemExit("this aircraft sent no positions")
    axes.plot(located["longitude"], located["latitude"], ".-", markersize=4, linewidth=0.8)
    for end in (located[0], located[-1]):
        axes.plot(end["longitude"], end["latitude"], "o", color="black")
        axes.annotate(clock(end["timeStamp"]), (end["longitude"], end["latitude"]), (10, -4), textcoords="offset points")
    axes.set(xlabel="longitude, degrees", ylabel="latitude, degrees")
    axes.set_aspect(1 / numpy.cos(numpy.radians(located["latitude"].mean())), adjustable="datalim")
    axes.margins(x=0.45, y=0.15)
    axes.ticklabel_format(useOffset=False)
    axes.grid(alpha=0.3)


def draw_over_time(axes: plt.Axes, frames: Frames, values: numpy.typing.NDArray[numpy.floating[Any]], style: str) -> None:
    known = numpy.isfinite(values)
    axes.plot(frames["timeStamp"][known], values[known], style, markersize=4, linewidth=1)
    axes.ticklabel_format(axis="y", useOffset=False)
    axes.grid(alpha=0.3)


def draw(frames: Frames, path: pathlib.Path) -> None:
    figure = plt.figure(figsize=(11, 5.5), layout="constrained")
    grid = figure.add_gridspec(3, 2, height_ratios=[2, 1, 1])
    draw_track(figure.add_subplot(grid[:, 0]), frames)
    upper = figure.add_subplot(grid[0, 1])
    draw_over_time(upper, frames, frames["altitude"], "C0.-")
    upper.set_ylabel("altitude, ft")
    middle = figure.add_subplot(grid[1, 1], sharex=upper)
    draw_over_time(middle, frames, frames["groundSpeed"], "C1.-")
    middle.set_ylabel("speed, kt")
    lower = figure.add_subplot(grid[2, 1], sharex=upper)
    draw_over_time(lower, frames, numpy.fmax(frames["verticalRate"], frames["verticalRateGnss"]), "C2.-")
    lower.set(xlabel="UTC", ylabel="climb, ft/min")
    lower.xaxis.set_major_locator(matplotlib.dates.AutoDateLocator(minticks=3, maxticks=5))
    lower.xaxis.set_major_formatter(matplotlib.dates.DateFormatter("%H:%M:%S"))
    for axes in (upper, middle):
        axes.tick_params(labelbottom=False)
    figure.align_ylabels([upper, middle, lower])
    figure.suptitle(f"{callsign_of(frames)}   {frames['icaoAddress'][0]:06X}")
    figure.savefig(path, dpi=110)


def main() -> None:
    parser = argparse.ArgumentParser(description="Draws one flight of a recording.")
    parser.add_argument("recording", type=pathlib.Path)
    parser.add_argument("picture", type=pathlib.Path)
    parser.add_argument("callsign", nargs="?", default="")
    arguments = parser.parse_args()

    frames = trevallo.decode_stream(arguments.recording)
    frames = frames[frames["tracked"]]
    draw(frames[frames["icaoAddress"] == aircraft_of(frames, arguments.callsign)], arguments.picture)


if __name__ == "__main__":
    main()
