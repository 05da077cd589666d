# SPDX-License-Identifier: MIT
"""track.py PROGRAM [SECONDS [AIRCRAFT]]: memory of `trevallo track` on a recording of an hour of 2,000 aircraft, or as
long and as many as given. It must not grow after the first half, in which all that is kept of an aircraft has come. The
outputs that keep something of each aircraft are written too."""
import os
import pathlib
import subprocess
import sys
import tempfile
import time

PROGRAM = sys.argv[1]
SECONDS = int(sys.argv[2]) if len(sys.argv) > 2 else 3600
AIRCRAFT = int(sys.argv[3]) if len(sys.argv) > 3 else 2000
POINTS = 10
GROWTH = 1.03
PIECE = 1 << 20


def resident(process):
    """KiB of memory."""
    lines = pathlib.Path(f"/proc/{process.pid}/status").read_text().splitlines()
    return next(int(line.split()[1]) for line in lines if line.startswith("VmRSS"))


def size_of_stream():
    """Bytes in all, estimated from the first tenth of a minute."""
    command = [PROGRAM, "simulate", "--mix", "adsb", "--aircraft", str(AIRCRAFT), "--seconds", "6", "--format", "beast"]
    return len(subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout) / 6 * SECONDS


def main():
    step = size_of_stream() / POINTS
    with tempfile.TemporaryDirectory() as folder:
        simulate = subprocess.Popen([PROGRAM, "simulate", "--mix", "adsb", "--aircraft", str(AIRCRAFT),
                                     "--seconds", str(SECONDS), "--format", "beast"], stdout=subprocess.PIPE)
        track = subprocess.Popen([PROGRAM, "track", "--time", "receiver", "--date", "2024-05-01T12:00:00Z",
                                  "--log", "none", "--table", "none", "--json", os.devnull, "--sbs", os.devnull,
                                  "--aircraft-json", f"{folder}/aircraft.json", "--db", f"{folder}/aircraft.csv",
                                  "--record", os.devnull, "-"], stdin=subprocess.PIPE)
        points, done, begin = [], 0, time.monotonic()
        while piece := simulate.stdout.read(PIECE):
            track.stdin.write(piece)
            done += len(piece)
            if done >= step * (len(points) + 1):
                points.append(resident(track))
                print(f"{done / 1e6:7.0f} MB  {done / 1e6 / (time.monotonic() - begin):5.1f} MB/s  "
                      f"{points[-1] / 1024:6.1f} MiB", flush=True)
        track.stdin.close()
        if simulate.wait() != 0 or track.wait() != 0:
            sys.exit("it failed")
    half = len(points) // 2
    growth = max(points[half:]) / max(points[:half])
    print(f"growth in the second half: {growth:.3f}, at most {GROWTH}")
    if growth > GROWTH:
        sys.exit("memory grows")


main()
