# SPDX-License-Identifier: MIT
"""track_files_test.py PROGRAM SAMPLE [CLASS[.TEST]]...: drives `trevallo track` as a user would:
outputs in files and on standard output."""
import json
import os
import re
import signal
import subprocess

from track_case import AT_NOON, PROGRAM, SAMPLE, TrackTest, run_tests
from track_support import PATIENCE, flight, snapshots, wait_for


class Files(TrackTest):
    def test_the_file_of_a_map_is_whole_whenever_it_is_read(self):
        recording = self.simulated("a.avr", "--mix", "adsb", "--aircraft", 100, "--seconds", 100, "--format", "avr-time")
        target = self.folder / "map" / "aircraft.json"
        target.parent.mkdir()
        program = self.running("--table", "none", "--speed", "20", "--aircraft-json", target, recording)
        wait_for("the file", target.exists)
        reads = 0
        moments = set()
        while program.process.poll() is None:
            moments.add(json.loads(target.read_text())["now"])
            reads += 1
        self.assertEqual(0, program.ended())
        self.assertEqual(100, len(json.loads(target.read_text())["aircraft"]))
        self.assertGreater(reads, 10)
        self.assertGreater(len(moments), 2)
        self.assertEqual(["aircraft.json", "receiver.json"], sorted(path.name for path in target.parent.iterdir()))

    def test_outputs_make_their_folders(self):
        recording = self.file("a.avr", flight(0x4B1234, "SWR12", 10))
        targets = {"--json": "a.json", "--aircraft-json": "aircraft.json", "--sbs": "a.sbs", "--beast": "a.beast",
                   "--avr": "out.avr", "--html": "pages", "--prometheus": "counts", "--stats-json": "stats.json",
                   "--record": "sky.beast.zst", "--db": "aircraft.csv", "--log-file": "log"}
        for option, name in targets.items():
            with self.subTest(option=option):
                target = self.folder / f"new{option}" / "folder" / name
                self.run_track("--table", "none", option, target, recording)
                self.assertTrue(target.exists())
                beyond = recording / "folder" / name
                result = self.run_track("--table", "none", option, beyond, recording, status=1)
                self.assertIn(f" {beyond}: ", result.stderr.decode())
                self.assertIn("Not a directory", result.stderr.decode())
        hourly = self.folder / "hourly" / "sky.beast"
        self.run_track("--table", "none", "--record", hourly, "--rotate", "--date", "2024-05-01", recording)
        self.assertEqual(["sky-2024-05-01T12.beast"], [path.name for path in hourly.parent.iterdir()])

    def test_pages_are_those_of_the_aircraft(self):
        pages = self.folder / "pages"
        self.run_track("--html", pages, self.file("a.avr", flight(0x4B1234, "SWR12", 10) + flight(0x3C5678, "DLH9", 5)))
        self.assertEqual(["3C5678.html", "4B1234.html", "index.html"], sorted(page.name for page in pages.iterdir()))
        index = (pages / "index.html").read_text()
        for link in re.findall(r'href="([^"]+)"', index):
            self.assertTrue((pages / link).is_file(), link)
        self.assertIn("SWR12", (pages / "4B1234.html").read_text())

    def test_a_full_disk_ends_one_output_and_leaves_the_others(self):
        recording = self.file("a.avr", flight(0x4B1234, "SWR12", 10))
        self.run_track("--avr", self.folder / "whole.avr", recording)
        whole = (self.folder / "whole.avr").read_bytes()
        for option in ("--json", "--sbs", "--beast", "--avr", "--prometheus", "--record", "--aircraft-json"):
            with self.subTest(option=option):
                good = self.folder / f"good{option}"
                result = self.run_track("--table", "final", option, "/dev/full", "--avr", good, recording, status=1)
                self.assertEqual(1, result.stderr.count(b"\n"), result.stderr)
                self.assertIn(b"/dev/full: No space left on device", result.stderr)
                if option != "--aircraft-json":  # beside which a file is written before anything is read
                    self.assertEqual(whole, good.read_bytes())
                    self.assertIn(b"4B1234  SWR12", result.stdout)

    def test_an_output_that_fails_is_reported_at_once(self):
        program = self.running("--table", "none", *AT_NOON, "--avr", "/dev/full", "--sbs", ":0", "listen://127.0.0.1:0")
        sbs, port = program.ports(2)
        feeder = self.peer(port)
        feeder.send(flight(0x4B1234, "SWR12", 5))
        program.said("cannot write /dev/full: No space left on device")
        reader = self.peer(sbs)

        def heard():
            feeder.send(flight(0x4B1234, "SWR12", 1))
            return b"4B1234" in reader.received
        wait_for("the other output", heard)
        program.signal(signal.SIGTERM)
        self.assertEqual(1, program.ended())
        self.assertEqual(1, program.count("/dev/full"))

    def test_an_output_that_nobody_reads_any_more_ends_the_run(self):
        long = self.file("a.avr", flight(0x4B1234, "SWR12", 3_600))
        database = self.folder / "aircraft.csv"
        result = subprocess.run(["sh", "-c", '"$0" "$@" | head -n 1', PROGRAM, "track", "--json", "-", "--db", database,
                                 long], capture_output=True, timeout=PATIENCE)
        self.assertEqual(1, len(snapshots(result.stdout)))
        self.assertEqual(b"", result.stderr)
        self.assertTrue(database.read_text().startswith("icao_addr,"))  # what it knows depends on how far the run came

    def test_counts_at_the_end_are_printed_below_the_table_or_on_standard_error(self):
        recording = self.file("a.avr", flight(0x4B1234, "SWR12", 10))
        with_table = self.run_track("--stats", "--table", "final", recording)
        self.assertEqual(b"", with_table.stderr)
        counts = with_table.stdout.decode().split("\n\n")[1:]
        self.assertIn("22  Replies given to a target.", counts[1])
        for arguments in (("--table", "none"), ("--json", "-")):
            self.assertEqual("\n".join(counts), self.run_track("--stats", *arguments, recording).stderr.decode())

    def test_counts_at_the_end_are_not_run_for(self):
        program = self.running("--stats", "--table", "none", "--beast", "/dev/full", *AT_NOON, "listen://127.0.0.1:0")
        self.peer(program.ports(1)[0]).send(flight(0x4B1234, "SWR12", 60))
        self.assertEqual(1, program.ended())
        self.assertEqual(1, program.count("Replies given to a target."))

    def test_counts_are_lines_on_standard_output(self):
        recording = self.file("a.avr", flight(0x4B1234, "SWR12", 10))
        counts = [json.loads(line) for line in self.run_track("--stats-json", "-", recording).stdout.splitlines()]
        self.assertEqual([1, 4, 6, 8, 10, 12, 15, 17, 19, 21, 22], [count["counters"]["tracked"] for count in counts])
        wrong = self.run_track("--stats-json", "-", "--json", "-", recording, status=2)
        self.assertEqual(b"trevallo: only one output can go to standard output\n", wrong.stderr)

    def test_targets_that_an_output_cannot_have_are_no_names_of_files(self):
        way_out = {"--aircraft-json": "file, or a port like :8080", "--prometheus": "file, or a port like :8080",
                   "--stats-json": "file", "--record": "file", "--db": "file", "--html": "folder"}
        for option, instead in way_out.items():
            for target in ("-", ":8099", "listen://8099", "tcp://127.0.0.1:8099"):
                is_port = target.startswith((":", "listen:"))
                if (is_port and "port" in instead) or (target == "-" and option == "--stats-json"):
                    continue
                with self.subTest(option=option, target=target):
                    place = "standard output" if target == "-" else "the network"
                    result = self.run_track(option, target, SAMPLE, status=2, cwd=self.folder)
                    self.assertEqual(f"trevallo: {option}: it cannot go to {place}: name a {instead} (see trevallo --help)\n",
                                     result.stderr.decode())
        self.assertEqual([], list(self.folder.iterdir()))

    def test_a_table_of_which_only_the_start_is_read_is_not_reported_as_a_failure(self):
        reading, writing = os.pipe()
        os.close(reading)
        with os.fdopen(writing, "wb") as unread:
            result = self.run_track(self.file("a.avr", flight(0x4B1234, "SWR12", 5)), stdout=unread, status=1)
        self.assertEqual(b"", result.stderr)

    def test_only_one_output_can_have_standard_output(self):
        result = self.run_track("--json", "-", "--sbs", "-", SAMPLE, status=2)
        self.assertEqual(b"trevallo: only one output can go to standard output\n", result.stderr)


run_tests()
