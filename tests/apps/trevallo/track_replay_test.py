# SPDX-License-Identifier: MIT
"""track_replay_test.py PROGRAM SAMPLE [CLASS[.TEST]]...: drives `trevallo track` as a user would:
recordings that are played back, and what is recorded."""
import os
import shutil
import time

from track_case import TrackTest, run_tests
from track_support import NOON, avr, flight, identification


class Replay(TrackTest):
    OUTPUTS = (("--json", "a.json"), ("--aircraft-json", "aircraft.json"), ("--sbs", "a.sbs"), ("--beast", "a.beast"),
               ("--avr", "a.avr"), ("--html", "pages"), ("--prometheus", "a.prom"), ("--record", "a.zst"),
               ("--db", "a.csv"))

    def outputs(self, name, recording, *arguments, environment=None, before=()):
        """Everything that one run leaves, by file."""
        folder = self.folder / name
        folder.mkdir()
        options = [word for option, target in self.OUTPUTS for word in (option, target)]
        result = self.run_track("--stats", "--table", "final", *options, *arguments, recording, cwd=folder,
                                env=environment, before=before)
        written = {str(path.relative_to(folder)): path.read_bytes() for path in folder.rglob("*") if path.is_file()}
        return {"table": result.stdout, **written}

    def expect_same(self, one, other):
        self.assertEqual(set(one), set(other))
        for name, content in one.items():
            self.assertEqual(content, other[name], name)

    def test_a_recording_gives_the_same_bytes_wherever_and_whenever(self):
        recording = self.simulated("a.beast", "--aircraft", 12, "--seconds", 40, "--bit-errors", 0.05, "--start",
                                   "23:59:40", "--format", "beast")
        arguments = ("--date", "2024-05-01", "--location", "48,11")
        usual = self.outputs("usual", recording, *arguments)
        self.assertGreater(len(usual), len(self.OUTPUTS))
        self.assertNotIn(b"", usual.values())
        places = ({"TZ": "Asia/Kathmandu", "LC_ALL": "C.UTF-8"}, {"TZ": "America/St_Johns", "LC_ALL": "de_DE.UTF-8"})
        for number, place in enumerate(places):
            self.expect_same(usual, self.outputs(f"place {number}", recording, *arguments,
                                                 environment={**os.environ, **place}))
        if faketime := shutil.which("faketime"):
            self.expect_same(usual, self.outputs("late", recording, *arguments,
                                                 before=(faketime, "2031-01-01 00:00:00")))

    def test_a_recording_that_is_played_takes_its_time_and_tells_the_same(self):
        recording = self.file("a.avr", flight(0x4B1234, "SWR12", 40) + flight(0x3C5678, "DLH9", 40))
        recording = self.file("b.avr", b"".join(sorted(recording.read_bytes().splitlines(keepends=True))))
        fast = self.outputs("fast", recording)
        begin = time.monotonic()
        played = self.outputs("played", recording, "--speed", "20")
        self.assertGreater(time.monotonic() - begin, 39.5 / 20 - 0.1)
        self.assertLess(time.monotonic() - begin, 39.5 / 20 + 15)
        self.expect_same(fast, played)

    def test_aircraft_are_dropped_at_the_same_moment_at_every_speed(self):
        recording = self.file("a.avr", flight(0x3C5678, "DLH9", 5) + flight(0x4B1234, "SWR12", 400, begin=NOON + 5_000))
        for timeout in ((), ("--timeout", "30")):
            fast = self.outputs(f"fast{timeout}", recording, *timeout)
            self.expect_same(fast, self.outputs(f"played{timeout}", recording, "--speed", "400", *timeout))
            self.assertEqual(not timeout, b"3C5678" in fast["table"])

    def test_what_was_recorded_plays_back_to_the_same_table(self):
        begin = 12 * 3_600_000 - 20_000
        original = self.file("a.avr", flight(0x4B1234, "SWR12", 40, begin=begin))
        dated = ("--date", "2024-05-01")
        whole = self.folder / "whole.beast.zst"
        self.run_track("--table", "none", *dated, "--record", whole, original)
        self.assertEqual(self.table(*dated, original), self.table(*dated, whole))
        self.run_track("--table", "none", *dated, "--rotate", "--record", self.folder / "sky.beast.zst", original)
        hours = sorted(self.folder.glob("sky-*"))
        self.assertEqual(["sky-2024-05-01T11.beast.zst", "sky-2024-05-01T12.beast.zst"], [path.name for path in hours])
        self.assertEqual(self.table(*dated, original), self.table("--merge", *hours))
        self.run_track("--table", "none", *dated, "--record", self.folder / "a.beast.gz", original)
        self.assertEqual(self.table(*dated, original), self.table(*dated, self.folder / "a.beast.gz"))

    def test_hourly_recordings_follow_the_clock_and_no_damaged_stamp(self):
        begin = NOON + 1_800_000
        there = flight(0x4B1234, "SWR12", 10, begin=begin)
        damage = b"".join(avr(identification(0x4B1234, "SWR12"), begin + hours * 3_600_000) for hours in (4, -4))
        back = flight(0x4B1234, "SWR12", 60, begin=begin - 3_600_000)
        recording = self.file("a.avr", there + damage + there + back)
        self.run_track("--table", "none", "--date", "2024-05-01", "--rotate", "--record", self.folder / "sky.beast",
                       recording)
        hours = sorted(self.folder.glob("sky-*"))
        self.assertEqual(["sky-2024-05-01T11.beast", "sky-2024-05-01T12.beast"], [path.name for path in hours])
        counts = [self.count_of("frames_total", path) for path in hours]
        self.assertEqual([132 - 9, 22 + 2 + 22 + 9], counts)  # nine frames are not enough to believe that time is back


run_tests()
