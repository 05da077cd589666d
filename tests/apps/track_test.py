# SPDX-License-Identifier: MIT
"""track_test.py PROGRAM SAMPLE [CLASS[.TEST]...]: drives `trevallo track` as a user would: recordings, sockets on the
loopback, pipes, a serial line, signals, a terminal."""
import gzip
import json
import os
import pathlib
import pty
import re
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import time
import tty
import unittest
import urllib.request

from track_support import (NOON, UNDATED, PATIENCE, Peer, Running, Server, avr, beast, damaged, flight, identification,
                           last_snapshots, position, seconds_to_probe, snapshots, stamp, wait_for)

PROGRAM, SAMPLE = map(os.path.abspath, sys.argv[1:3])
AT_NOON = ("--time", "receiver", "--date", "2024-05-01T12:00:00Z")


class TrackTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def file(self, name, content):
        path = self.folder / name
        path.write_bytes(content)
        return path

    def run_track(self, *arguments, status=0, before=(), **settings):
        settings.setdefault("stdout", subprocess.PIPE)
        result = subprocess.run([*before, PROGRAM, "track", *map(str, arguments)], stderr=subprocess.PIPE, timeout=PATIENCE,
                                **settings)
        self.assertEqual(status, result.returncode, result.stderr)
        return result

    def table(self, *arguments):
        return self.run_track("--table", "final", *arguments).stdout.decode()

    def last_of(self, *arguments):
        """The last snapshot of each aircraft, by source and address."""
        return last_snapshots(self.run_track("--json", "-", *arguments).stdout)

    def count_of(self, name, *arguments):
        """One of the counts of a run."""
        text = self.folder / "counts"
        self.run_track("--table", "none", "--prometheus", text, *arguments)
        return counted(name, text.read_text())

    def running(self, *arguments, **settings):
        program = Running([PROGRAM, "track", *map(str, arguments)], **settings)
        self.addCleanup(program.__exit__)
        return program

    def peer(self, *arguments, **settings):
        peer = Peer(*arguments, **settings)
        self.addCleanup(peer.close)
        return peer

    def simulated(self, name, *arguments):
        path = self.folder / name
        subprocess.run([PROGRAM, "simulate", "--output", path, *map(str, arguments)], check=True, timeout=PATIENCE)
        return path


def counted(name, prometheus):
    match = re.search(rf"^trevallo_{re.escape(name)} (\d+)$", prometheus, re.M)
    return int(match.group(1)) if match else 0


def fetched(port):
    with urllib.request.urlopen(f"http://127.0.0.1:{port}/metrics", timeout=PATIENCE) as answer:
        return answer.read().decode()


class Recordings(TrackTest):
    def test_a_compressed_recording_gives_the_same_table(self):
        content = flight(0x4B1234, "SWR12", 20)
        plain = self.table(self.file("flight.avr", content))
        self.assertIn("4B1234  SWR12", plain)
        self.assertEqual(plain, self.table(self.file("flight.avr.gz", gzip.compress(content))))
        recorded = self.folder / "flight.beast.zst"
        self.run_track("--table", "none", "--record", recorded, self.folder / "flight.avr")
        self.assertEqual(b"\x28\xb5\x2f\xfd", recorded.read_bytes()[:4])
        self.assertEqual(plain, self.table(recorded))

    def test_snapshots_are_of_each_second(self):
        shots = snapshots(self.run_track("--json", "-", self.file("a.avr", flight(0x4B1234, "SWR12", 30))).stdout)
        self.assertEqual([*range(30), 29], [(shot["nowMs"] - UNDATED - NOON) // 1000 for shot in shots])
        self.assertLessEqual(max(shot["age"] for shot in shots), 1.0)

    def test_sources_have_aircraft_of_their_own(self):
        one = self.file("one.avr", flight(0x4B1234, "SWR12", 10))
        two = self.file("two.avr", flight(0x4B1234, "SWR12", 20) + flight(0x3C5678, "DLH9", 5))
        last = self.last_of(one, two)
        self.assertEqual({(str(one), "4B1234"), (str(two), "4B1234"), (str(two), "3C5678")}, set(last))
        self.assertEqual([22, 44, 11], [last[key]["messages"] for key in
                                        ((str(one), "4B1234"), (str(two), "4B1234"), (str(two), "3C5678"))])
        heading = self.table(one, two).splitlines()[0]
        self.assertIn("Source", heading)

    def test_a_source_that_is_given_twice_has_two_names(self):
        one = self.file("one.avr", flight(0x4B1234, "SWR12", 10))
        self.assertEqual({(str(one), "4B1234"), (f"{one} (2)", "4B1234")}, set(self.last_of(one, one)))

    def test_merged_sources_have_one_aircraft_each(self):
        one = self.file("one.avr", flight(0x4B1234, "SWR12", 10))
        two = self.file("two.avr", flight(0x4B1234, "SWR12", 20) + flight(0x3C5678, "DLH9", 5))
        last = self.last_of("--merge", one, two)
        self.assertEqual({(None, "4B1234"): 66, (None, "3C5678"): 11},
                         {key: shot["messages"] for key, shot in last.items()})

    def test_a_recording_goes_on_across_midnight(self):
        late = flight(0x4B1234, "SWR12", 20, begin=86_390_000)
        shots = snapshots(self.run_track("--json", "-", "--date", "2024-02-28", self.file("a.avr", late)).stdout)
        self.assertEqual("2024-02-28T23:59:50", shots[0]["lastUpdate"][:19])
        self.assertEqual("2024-02-29T00:00:09.500Z", shots[-1]["lastUpdate"])
        self.assertTrue(shots[-1]["timeKnown"])
        self.assertLessEqual(max(shot["positionAge"] or 0 for shot in shots), 1.0)
        undated = snapshots(self.run_track("--json", "-", self.folder / "a.avr").stdout)
        self.assertEqual("1970-01-03T00:00:09.500Z", undated[-1]["lastUpdate"])
        self.assertFalse(undated[-1]["timeKnown"])

    def test_each_source_has_its_date(self):
        one = self.file("one.avr", flight(0x4B1234, "SWR12", 2))
        two = self.file("two.avr", flight(0x4B1234, "SWR12", 2))
        last = self.last_of("--date", "2024-05-01", "--date", "2024-05-03", one, two)
        self.assertEqual(["2024-05-01", "2024-05-03"],
                         [last[str(one), "4B1234"]["now"][:10], last[str(two), "4B1234"]["now"][:10]])
        wrong = self.run_track(*["--date", "2024-05-01"] * 3, one, two, status=2)
        self.assertEqual(b"trevallo: --date is given once for all sources, or once for each\n", wrong.stderr)

    def test_the_date_in_the_name_of_a_recording_is_its_date(self):
        last = self.last_of(self.file("sky-2023-12-31.avr", flight(0x4B1234, "SWR12", 2)))
        self.assertEqual("2023-12-31T12:00:01.500Z", last[None, "4B1234"]["now"])

    def test_ticks_of_12_mhz_are_counted_from_the_beginning(self):
        def ticks(begin, first):
            return flight(0x4B1234, "SWR12", 10, latitude=first,
                          encode=lambda frame, ms: beast(frame, begin + (ms - NOON) * 12_000))

        wrap = 1 << 48
        stream = b"".join(beast(frame, (wrap - 30_000_000 + at) % wrap) for at, frame in
                          [(at * 6_000_000, position(0x4B1234, 48 + at / 900, 11.0, at % 2)) for at in range(20)])
        for reading in ("auto", "12mhz"):
            last = self.last_of("--time", reading, "--date", "2024-05-01T10:00:00Z", self.file("wrap.beast", stream))
            self.assertEqual("2024-05-01T10:00:09.500Z", last[None, "4B1234"]["positionLastUpdate"], reading)
            self.assertEqual(0, last[None, "4B1234"]["positionsRefused"])
        jump = self.file("jump.beast", ticks(10 ** 12, 48.0) + ticks(0, 48.03))
        self.assertEqual(1, self.count_of("time_jumps_total", "--time", "12mhz", jump))
        last = self.last_of("--time", "12mhz", "--date", "2024-05-01T10:00:00Z", jump)
        self.assertEqual("2024-05-01T10:00:19.000Z", last[None, "4B1234"]["lastUpdate"])

    def test_a_fixed_time_is_that_of_all(self):
        recording = self.file("a.avr", flight(0x4B1234, "SWR12", 60))
        last = self.last_of("--time", "fixed:2024-05-01T12:34:56Z", recording)[None, "4B1234"]
        self.assertEqual("2024-05-01T12:34:56.000Z", last["lastUpdate"])
        self.assertEqual("2024-05-01T12:34:56.000Z", last["positionLastUpdate"])
        self.assertEqual(0, last["age"])

    def test_times_that_say_nothing_refuse_no_position(self):
        untimed = self.file("a.avr", flight(0x4B1234, "SWR12", 60, encode=lambda frame, _: avr(frame)))
        for arguments in ((), ("--time", "fixed:2024-05-01T12:34:56Z")):
            last = self.last_of(*arguments, untimed)[None, "4B1234"]
            self.assertEqual(0, last["positionsRefused"])
            self.assertAlmostEqual(48 + 119 / 900, last["latitude"], 3)

    def test_a_damaged_time_stamp_does_not_hold_up_the_others(self):
        stream = flight(0x4B1234, "SWR12", 10)
        forged = stream + avr(identification(0x4B1234, "SWR12"), NOON + 7_200_000) + \
            flight(0x4B1234, "SWR12", 10, begin=NOON + 10_000, latitude=48.02)
        with self.running("--speed", "100", "--json", "-", self.file("a.avr", forged)) as program:
            self.assertEqual(0, program.ended())
        self.assertEqual("1970-01-02T12:00:19.500Z", snapshots(program.output)[-1]["now"])

    def test_a_damaged_time_stamp_makes_its_aircraft_no_younger(self):
        gone = flight(0x3C5678, "DLH9", 5) + avr(identification(0x3C5678, "DLH9"), NOON + 4 * 3_600_000)
        recording = self.file("a.avr", gone + flight(0x4B1234, "SWR12", 60, begin=NOON + 5_000))
        self.assertEqual("1970-01-02T12:00:04.500Z", self.last_of(recording)[None, "3C5678"]["lastUpdate"])
        self.assertNotIn("3C5678", self.table("--timeout", "30", recording))

    def test_a_clock_that_is_set_back_leaves_no_aircraft_of_a_time_to_come(self):
        recording = self.file("a.avr", flight(0x4B1234, "SWR12", 30) +
                              flight(0x3C5678, "DLH9", 60, begin=NOON - 3_600_000))
        for timeout in ((), ("--timeout", "30")):
            table = self.table(*timeout, recording)
            self.assertNotIn("4B1234", table)
            self.assertIn("3C5678", table)
        self.assertEqual(1, self.count_of("targets_dropped_total", recording))
        back = self.file("b.avr", recording.read_bytes() + flight(0x4B1234, "SWR12", 5, begin=NOON - 3_540_000))
        self.assertEqual(11, self.last_of(back)[None, "4B1234"]["messages"])

    def test_the_wrong_format_is_told(self):
        text = self.file("text", flight(0x4B1234, "SWR12", 600))
        result = self.run_track("--format", "beast", text)
        self.assertEqual(1, result.stderr.count(b"\n"), result.stderr)
        self.assertIn(b"this looks like AVR text; expected Beast", result.stderr)


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
                                   "23:59:40", "--format", "beast-doubled")
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


class Sky(TrackTest):
    def test_repaired_replies_make_no_aircraft_unless_wanted(self):
        known, ghost = position(0x4B1234, 48.0, 11.0, 0), position(0x3C5678, 48.0, 11.0, 0)
        recording = self.file("a.avr", flight(0x4B1234, "SWR12", 5) + avr(damaged(known, 40), NOON + 5_000) +
                              avr(damaged(ghost, 40), NOON + 5_100))
        expected = {"keep": ({"4B1234": 12, "3C5678": 1}, 0), "known": ({"4B1234": 12}, 1), "drop": ({"4B1234": 11}, 2)}
        for choice, (messages, refused) in expected.items():
            last = self.last_of("--repaired", choice, recording)
            self.assertEqual(messages, {shot["icaoAddressString"]: shot["messages"] for shot in last.values()}, choice)
            self.assertEqual(refused, self.count_of("repaired_refused_total", "--repaired", choice, recording), choice)
        self.assertEqual({(None, "4B1234")}, set(self.last_of(recording)))

    def test_positions_out_of_range_are_refused_and_counted(self):
        recording = self.file("a.avr", flight(0x4B1234, "SWR12", 1) + flight(0x3C5678, "DLH9", 1, 52.0, 11.0))
        near = ("--location", "48,11", "--max-range", "100", recording)
        last = self.last_of(*near)
        self.assertAlmostEqual(48.001, last[None, "4B1234"]["latitude"], 3)
        self.assertIsNone(last[None, "3C5678"]["latitude"])
        self.assertEqual(1, last[None, "3C5678"]["positionsRefused"])
        self.assertEqual(1, self.count_of("positions_out_of_range_total", *near))
        self.assertEqual(0, self.count_of("positions_out_of_range_total", recording))

    def test_a_full_table_loses_replies_counted_and_drops_the_oldest(self):
        def squitters(first, count, ms):
            return b"".join(avr(identification(first + number, "A"), ms + number) for number in range(count))

        room = self.file("a.avr", squitters(0x100000, 4095, NOON) + squitters(0x200000, 100, NOON + 5_000))
        self.assertEqual(100, self.count_of("table_full_total", room))
        late = self.file("b.avr", squitters(0x100000, 4095, NOON) + squitters(0x200000, 50, NOON + 60_000))
        counts = self.folder / "counts"
        rows = {line.split()[1] for line in self.table("--prometheus", counts, late).splitlines()[2:-2]}
        dropped = counted("targets_made_room_total", counts.read_text())
        self.assertEqual(0, counted("table_full_total", counts.read_text()))
        self.assertIn(dropped, range(64, 70))
        self.assertEqual({f"{0x100000 + number:06X}" for number in range(dropped, 4095)} |
                         {f"{0x200000 + number:06X}" for number in range(50)}, rows)

    def test_silent_aircraft_are_dropped_when_their_time_is_over(self):
        recording = self.file("a.avr", flight(0x3C5678, "DLH9", 5) + flight(0x4B1234, "SWR12", 60, begin=NOON + 5_000))
        self.assertIn("3C5678", self.table(recording))
        self.assertNotIn("3C5678", self.table("--timeout", "30", recording))
        self.assertEqual(1, self.count_of("targets_dropped_total", "--timeout", "30", recording))

    def test_the_database_learns_from_all_sources(self):
        database = self.folder / "aircraft.csv"
        one = self.file("one.avr", flight(0x4B1234, "SWR12", 10))
        two = self.file("two.avr", flight(0x3C5678, "DLH9", 10))
        self.run_track("--db", database, one, two)
        self.assertEqual({"4B1234", "3C5678"}, {line.split(",")[0].upper() for line in
                                                database.read_text().splitlines()[1:]})


class Sources(TrackTest):
    def test_a_source_that_cannot_be_understood_is_wrong_usage(self):
        for source, fault in {
            "tcp://": "cannot use tcp://: it ends with no port from 0 to 65535",
            "tcp://receiver:65536": "cannot use tcp://receiver:65536: it ends with no port from 0 to 65535",
            "tcp://:30005": "cannot use the source tcp://:30005: it names no host, like tcp://localhost:30005",
            "listen://::1:30005": "cannot use listen://::1:30005: an address with colons stands in brackets, "
                                  "like [::1]:30005",
            "serial://ttyUSB0": "cannot use the source serial://ttyUSB0: its device needs a whole path, "
                                "like serial:///dev/ttyUSB0",
            "serial:///dev/ttyUSB0?speed=9": "cannot use the source serial:///dev/ttyUSB0?speed=9: "
                                             "a serial receiver is named like serial:///dev/ttyUSB0?baud=3000000",
            "udp://receiver:1": "cannot use the source udp://receiver:1: "
                                "sources are files, -, tcp://HOST:PORT, listen://PORT and serial://DEVICE",
        }.items():
            with self.subTest(source):
                result = self.run_track(source, status=2)
                self.assertEqual(f"trevallo: {fault}\n".encode(), result.stderr)

    def test_a_lost_connection_is_made_again(self):
        program = None
        with Server() as server:
            program = self.running("--json", "-", *AT_NOON, "--prometheus", ":0", f"tcp://127.0.0.1:{server.port}")
            port = program.ports(1)[0]
            server.accept().sendall(flight(0x4B1234, "SWR12", 2))
            wait_for("the frames", lambda: counted("frames_total", fetched(port)) == 5)
        program.said("the connection was closed; trying again until it works")
        with Server(server.port) as server:
            server.accept().sendall(flight(0x3C5678, "DLH9", 2, begin=NOON + 5_000))
            wait_for("the frames", lambda: counted("frames_total", fetched(port)) == 10)
            self.assertEqual(1, counted("reconnections_total", fetched(port)))
            program.signal(signal.SIGTERM)
            self.assertEqual(0, program.ended())
        self.assertEqual({"4B1234", "3C5678"}, {key[1] for key in last_snapshots(program.output)})
        for line, told in zip(program.lines[1:], ("the connection was closed; trying again", "connected again",
                                                  "stopped by SIGTERM after 10 frames"), strict=True):
            self.assertIn(told, line)

    def test_a_receiver_that_is_not_there_yet_is_told_once(self):
        with Server() as server:
            port = server.port
        program = self.running("--json", "-", *AT_NOON, f"tcp://127.0.0.1:{port}")
        program.said("cannot connect: Connection refused; trying again until it works")
        with Server(port) as server:
            server.accept().sendall(flight(0x4B1234, "SWR12", 2))
            program.said(": connected")
            wait_for("the aircraft", lambda: b"4B1234" in program.output)
            program.signal(signal.SIGINT)
            self.assertEqual(0, program.ended())
        self.assertEqual(1, program.count("cannot connect"))

    def test_feeders_come_and_go(self):
        program = self.running("--json", "-", *AT_NOON, "--prometheus", ":0", "listen://127.0.0.1:0")
        http, port = program.ports(2)
        text, binary = self.peer(port), self.peer(port)
        text.send(flight(0x4B1234, "SWR12", 2))
        binary.send(flight(0x3C5678, "DLH9", 2, encode=lambda frame, ms: beast(frame, stamp(ms))))
        wait_for("both", lambda: counted("frames_total", fetched(http)) == 10)
        text.close()
        program.said("went away")
        binary.send(flight(0x3C5678, "DLH9", 2, latitude=48.01, begin=NOON + 2_000,
                           encode=lambda frame, ms: beast(frame, stamp(ms))))
        wait_for("the other", lambda: counted("frames_total", fetched(http)) == 15)
        self.assertIn('source_up{source="listen://127.0.0.1:0"} 1', fetched(http))
        program.signal(signal.SIGTERM)
        self.assertEqual(0, program.ended())
        self.assertEqual({"4B1234": 5, "3C5678": 10},
                         {key[1]: shot["messages"] for key, shot in last_snapshots(program.output).items()})
        self.assertEqual(2, program.count("connected"))

    def test_connections_are_probed_when_nothing_is_heard_of_their_peers(self):
        with Server() as server:
            program = self.running("--table", "none", *AT_NOON, "--avr", "listen://127.0.0.1:0",
                                   f"tcp://127.0.0.1:{server.port}", "listen://127.0.0.1:0")
            output, port = program.ports(2)
            reader, feeder, receiver = self.peer(output), self.peer(port), server.accept()
            source = receiver.getpeername()[1]
            for local in (output, port, source):
                seconds = wait_for("the timer", lambda local=local: seconds_to_probe(local))
                self.assertLessEqual(seconds, 60)
            self.assertFalse(reader.is_closed or feeder.is_closed)

    def test_more_than_64_feeders_are_turned_away(self):
        program = self.running("--table", "none", *AT_NOON, "--prometheus", ":0", "listen://127.0.0.1:0")
        http, port = program.ports(2)
        feeders = [self.peer(port, reads=False) for _ in range(64)]
        program.said("connected", times=64)
        late = self.peer(port)
        program.said("was turned away: there are 64 already")
        wait_for("the end", lambda: late.is_closed)
        feeders.pop().close()
        program.said("went away")
        self.peer(port).send(flight(0x4B1234, "SWR12", 2))
        wait_for("the frames", lambda: counted("frames_total", fetched(http)) == 5)

    def test_a_feeder_of_nonsense_is_named_and_the_others_stay(self):
        program = self.running("--json", "-", *AT_NOON, "listen://127.0.0.1:0")
        port = program.ports(1)[0]
        good, bad = self.peer(port), self.peer(port)
        bad.send(b"GET / HTTP/1.1\r\nHost: feeder\r\n\r\n" * 4_000)
        program.said("cannot tell the format of feeder 127.0.0.1 port ")
        good.send(flight(0x4B1234, "SWR12", 2))
        wait_for("the aircraft", lambda: b"4B1234" in program.output)

    def test_the_wrong_format_on_the_line_is_told(self):
        with Server() as server:
            program = self.running("--json", "-", "--format", "beast", f"tcp://127.0.0.1:{server.port}")
            server.accept().sendall(flight(0x4B1234, "SWR12", 600))
            program.said("this looks like AVR text; expected Beast")

    def test_the_wrong_format_of_few_bytes_is_told(self):
        few = flight(0x4B1234, "SWR12", 4)
        with Server() as server:
            program = self.running("--json", "-", "--format", "beast", f"tcp://127.0.0.1:{server.port}")
            connection = server.accept()
            connection.sendall(few[:few.index(b"\n")])
            program.said("no frames in the last 42 bytes: this looks like AVR text; expected Beast")
            connection.close()
            server.accept().sendall(few)
            server.connection.close()
            program.said(f"no frames in the last {len(few)} bytes: this looks like AVR text; expected Beast")
        program.signal(signal.SIGTERM)
        self.assertEqual(0, program.ended())

    def test_what_sends_no_frames_is_named(self):
        expected = "; expected AVR text, a Beast stream, raw binary or hexadecimal lines"
        for sent, name in ((b"HTTP/1.1 200 OK\r\nContent-Type: text/html\r\n\r\n<html>", "a web page"),
                           (b"MSG,8,1,1,4B1234,1,2024/05/01,12:00:00.000,", "BaseStation text"),
                           (b'{"now":1714564800.0,"aircraft":[]}', "JSON")):
            with self.subTest(name), Server() as server:
                program = self.running("--json", "-", f"tcp://127.0.0.1:{server.port}")
                connection = server.accept()
                connection.sendall(sent)
                program.said(f"cannot tell the format of what it sends: this looks like {name}{expected}")
                program.signal(signal.SIGTERM)
                self.assertEqual(0, program.ended())
                result = self.run_track("-", input=sent, status=1)
                self.assertEqual(f"trevallo: cannot tell the format of standard input: this looks like {name}{expected}\n",
                                 result.stderr.decode())

    def test_a_serial_receiver_is_read(self):
        receiver, line = pty.openpty()
        self.addCleanup(os.close, receiver)
        tty.setraw(line)
        program = self.running("--json", "-", *AT_NOON, f"serial://{os.ttyname(line)}?baud=115200")
        os.close(line)
        os.write(receiver, flight(0x4B1234, "SWR12", 5))
        wait_for("the aircraft", lambda: b"4B1234" in program.output)
        program.signal(signal.SIGINT)
        self.assertEqual(0, program.ended())
        self.assertEqual(["trevallo: stopped by SIGINT after 11 frames"], program.lines)

    def test_a_terminal_that_is_named_as_a_file_is_read_as_it_fills(self):
        keys, terminal = pty.openpty()
        self.addCleanup(os.close, keys)
        self.addCleanup(os.close, terminal)
        tty.setraw(terminal)
        program = self.running("--json", "-", *AT_NOON, os.ttyname(terminal))
        os.write(keys, flight(0x4B1234, "SWR12", 5))
        wait_for("the aircraft", lambda: b"4B1234" in program.output)
        program.signal(signal.SIGINT)
        self.assertEqual(0, program.ended())

    def test_a_serial_receiver_that_is_not_there_is_told(self):
        program = self.running("--json", "-", "serial:///dev/no-such-receiver")
        program.said("cannot open /dev/no-such-receiver: No such file or directory; trying again until it works")
        program.signal(signal.SIGTERM)
        self.assertEqual(0, program.ended())

    def test_a_named_pipe_is_read_as_it_fills(self):
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        with open(os.open(pipe, os.O_RDWR), "wb", buffering=0) as feeder:  # open for reading too: it does not wait
            program = self.running("--json", "-", *AT_NOON, pipe)
            feeder.write(flight(0x4B1234, "SWR12", 5))
            wait_for("the aircraft", lambda: b"4B1234" in program.output)
            feeder.write(flight(0x3C5678, "DLH9", 5))
            wait_for("another aircraft", lambda: b"3C5678" in program.output)
        self.assertEqual(0, program.ended())
        self.assertEqual([], program.lines)

    def test_standard_input_is_read_packed_or_not(self):
        plain = flight(0x4B1234, "SWR12", 5)
        for stream in (plain, gzip.compress(plain)):
            feeding = subprocess.run([PROGRAM, "track", "--json", "-", *AT_NOON, "-"], input=stream, capture_output=True,
                                     timeout=PATIENCE)
            self.assertEqual((0, b""), (feeding.returncode, feeding.stderr))
            self.assertEqual({(None, "4B1234")}, set(last_snapshots(feeding.stdout)))
        with open(self.file("a.avr", plain), "rb") as recording:
            result = self.run_track("--json", "-", "-", stdin=recording)
        self.assertEqual("1970-01-02T12:00:04.500Z", snapshots(result.stdout)[-1]["now"])

    def test_the_time_of_arrival_is_that_of_the_host(self):
        content = flight(0x4B1234, "SWR12", 5)
        begin = time.time_ns() // 1_000_000
        piped = self.run_track("--json", "-", "--time", "arrival", "-", input=content)
        read = self.run_track("--json", "-", "--time", "arrival", self.file("a.avr", content))
        for result in (piped, read):
            last = last_snapshots(result.stdout)[None, "4B1234"]
            self.assertEqual(11, last["messages"])
            self.assertIn(last["lastUpdateMs"], range(begin, time.time_ns() // 1_000_000 + 1))

    def test_a_packed_pipe_that_is_cut_short_or_damaged_is_read_up_to_there(self):
        packed = gzip.compress(flight(0x4B1234, "SWR12", 600), mtime=0)
        damage = packed[:len(packed) // 2] + bytes(100) + packed[len(packed) // 2 + 100:]
        for stream, told in ((packed[:len(packed) // 2], b"cut short"), (damage, b"damaged")):
            result = self.run_track("--json", "-", *AT_NOON, "-", input=stream)
            self.assertEqual(b"trevallo: standard input: its compressed data is " + told + b"\n", result.stderr)
            self.assertEqual({(None, "4B1234")}, set(last_snapshots(result.stdout)))

    def test_a_signal_ends_the_reading_of_what_has_no_frames(self):
        program = self.running("--format", "beast", "--table", "none", "--prometheus", ":0", "/dev/zero")
        fetched(program.ports(1)[0])  # which is answered meanwhile
        program.signal(signal.SIGINT)
        self.assertEqual(0, program.ended())
        self.assertEqual("trevallo: stopped by SIGINT after 0 frames", program.lines[-1])

    def test_a_signal_ends_every_kind_of_source(self):
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        receiver, line = pty.openpty()
        self.addCleanup(os.close, receiver)
        tty.setraw(line)
        slow = self.file("slow.avr", flight(0x4B1234, "SWR12", 600))
        with Server() as server, open(os.open(pipe, os.O_RDWR), "wb", buffering=0):
            sources = ["-", pipe, f"tcp://127.0.0.1:{server.port}", "listen://127.0.0.1:0",
                       f"serial://{os.ttyname(line)}", slow]
            for source in sources:
                for stop in (signal.SIGINT, signal.SIGTERM):
                    speed = ("--speed", "1") if source == slow else ()
                    program = self.running("--prometheus", ":0", "--table", "final", *speed, source,
                                           stdin=subprocess.PIPE)
                    fetched(program.ports(1)[0])  # it is at work
                    program.signal(stop)
                    with self.subTest(source=source, stop=stop):
                        self.assertEqual(0, program.ended())
                        self.assertRegex(program.lines[-1], f"^trevallo: stopped by {stop.name} after [0-9]+ frames$")
                        self.assertIn(b"frames,", program.output)


class Readers(TrackTest):
    def fed(self, *arguments):
        """The program with a feeder, and the ports of its outputs."""
        program = self.running("--table", "none", *AT_NOON, *arguments, "listen://127.0.0.1:0")
        ports = program.ports(len(arguments) // 2 + 1)
        return program, self.peer(ports[-1]), ports[:-1]

    def feed_until(self, feeder, what, condition):
        """Sends an aircraft again and again, as long as there is someone who has not heard of it."""
        def fed():
            feeder.send(flight(0x4B1234, "SWR12", 1))
            time.sleep(0.05)
            return condition()
        wait_for(what, fed)

    def test_every_output_has_several_readers(self):
        program, feeder, ports = self.fed("--json", ":0", "--sbs", ":0", "--beast", ":0", "--avr", ":0")
        readers = {port: [self.peer(port) for _ in range(2)] for port in ports}
        everyone = [reader for pair in readers.values() for reader in pair]
        self.feed_until(feeder, "all readers", lambda: all(reader.received for reader in everyone))
        feeder.send(flight(0x3C5678, "DLH9", 2, begin=NOON + 2_000))
        feeder.close()
        program.said("went away")
        program.signal(signal.SIGTERM)
        self.assertEqual(0, program.ended())
        wait_for("the ends", lambda: all(reader.is_closed for reader in everyone))
        for port, last in zip(ports, (b'"icaoAddressString":"3C5678"', b",3C5678,",
                                      beast(position(0x3C5678, 48 + 3 / 900, 11.0, 1), stamp(NOON + 3_500), 0),
                                      avr(position(0x3C5678, 48 + 3 / 900, 11.0, 1), NOON + 3_500))):
            for reader in readers[port]:
                self.assertIn(last, bytes(reader.received))
        for reader in readers[ports[0]]:
            self.assertIn("3C5678", {shot["icaoAddressString"] for shot in snapshots(reader.received)})
        for reader in readers[ports[1]]:
            self.assertEqual({22}, {len(line.split(b",")) for line in reader.received.splitlines()})
        for reader in readers[ports[3]]:
            self.assertRegex(bytes(reader.received), rb"\A(@[0-9A-F]{40};\n)+\Z")

    def test_more_than_64_readers_are_turned_away_which_is_told_once(self):
        program, feeder, (port,) = self.fed("--avr", "listen://127.0.0.1:0")
        readers = [self.peer(port) for _ in range(64)]
        for late in (self.peer(port), self.peer(port)):
            wait_for("the end", lambda late=late: late.is_closed)
        self.assertEqual(1, program.count("was turned away: there are 64 already"))
        self.feed_until(feeder, "all others", lambda: all(reader.received for reader in readers))

    def test_a_reader_that_goes_away_leaves_the_others_alone(self):
        _, feeder, (port,) = self.fed("--avr", ":0")
        leaving, staying = self.peer(port), self.peer(port)
        self.feed_until(feeder, "both readers", lambda: leaving.received and staying.received)
        leaving.close()
        have = len(staying.received)
        self.feed_until(feeder, "more", lambda: len(staying.received) > have + 10_000)

    def test_a_reader_that_never_reads_loses_items_and_holds_up_nobody(self):
        _, feeder, (json_port, http) = self.fed("--json", ":0", "--prometheus", ":0")
        deaf, reader = self.peer(json_port, reads=False, buffer=4096), self.peer(json_port)
        self.feed_until(feeder, "the reader", lambda: reader.received)
        everyone = range(0x100000, 0x100000 + 3000)
        rounds = 0
        while counted("output_dropped_total", fetched(http)) == 0:
            rounds += 1
            self.assertLess(rounds, 10)
            have = len(reader.received)
            feeder.send(b"".join(avr(identification(address, "CROWD"), NOON + 10 + 10 * rounds) for address in everyone))
            wait_for("a snapshot of the last", lambda: b'"icaoAddressString":"100BB7"' in reader.received[have:])
        told = {shot["icaoAddress"] for shot in snapshots(bytes(reader.received).rpartition(b"\n")[0])}
        self.assertLessEqual(set(everyone), told)
        self.assertTrue(deaf.socket.fileno() > 0)

    def test_a_reader_to_connect_to_is_waited_for(self):
        with Server() as server:
            program = self.running("--table", "none", *AT_NOON, "--avr", f"tcp://127.0.0.1:{server.port}",
                                   "listen://127.0.0.1:0")
            feeder = self.peer(program.ports(1)[0])
            connection = server.accept()
            connection.settimeout(0.1)

            def received():
                try:
                    return connection.recv(4096)
                except TimeoutError:
                    return b""
            feeder.send(flight(0x4B1234, "SWR12", 1))
            self.feed_until(feeder, "frames", received)

    def test_a_reader_to_connect_to_gets_a_whole_recording(self):
        with Server() as server:
            program = self.running("--table", "none", "--confidence", "none", "--avr", f"tcp://127.0.0.1:{server.port}",
                                   SAMPLE)
            with server.accept().makefile("rb") as reader:
                received = reader.read()
            self.assertEqual(0, program.ended())
        self.assertEqual(14_662, received.count(b";\n"))
        self.assertEqual(0, program.count("did not reach it"))

    def test_what_does_not_reach_a_reader_is_told(self):
        recording = self.file("a.avr", flight(0x4B1234, "SWR12", 10))
        with Server() as server:
            port = server.port
        result = self.run_track("--table", "none", "--avr", f"tcp://127.0.0.1:{port}", recording)
        self.assertIn(f"tcp://127.0.0.1:{port}: 22 items did not reach it\n".encode(), result.stderr)

    def test_what_comes_while_a_reader_is_away_is_lost_and_counted(self):
        with Server() as server:
            program = self.running("--table", "none", *AT_NOON, "--prometheus", ":0", "--avr",
                                   f"tcp://127.0.0.1:{server.port}", "listen://127.0.0.1:0")
            http, port = program.ports(2)
            server.accept()
        program.said("the connection was lost")
        self.peer(port).send(flight(0x4B1234, "SWR12", 5))
        wait_for("the loss", lambda: counted("output_dropped_total", fetched(http)) == 11)
        program.signal(signal.SIGTERM)
        self.assertEqual(0, program.ended())
        self.assertEqual(1, program.count("11 items did not reach it"))

    def test_counts_are_told_by_http(self):
        _, feeder, (http,) = self.fed("--prometheus", ":0")
        feeder.send(flight(0x4B1234, "SWR12", 10) + avr(damaged(identification(0x4B1234, "SWR12"), 30), NOON + 10_000))
        text = wait_for("the frames", lambda: (text := fetched(http)) and counted("frames_total", text) == 23 and text)
        self.assertEqual(1, counted("targets", text))
        self.assertEqual(1, counted("repaired_total", text))
        self.assertIn('trevallo_frames_by_format_total{format="17"} 23', text)
        request = urllib.request.Request(f"http://127.0.0.1:{http}/", data=b"x", method="POST")
        with self.assertRaises(urllib.error.HTTPError) as refused:
            urllib.request.urlopen(request, timeout=PATIENCE)
        self.assertEqual(405, refused.exception.code)
        refused.exception.close()

    def test_the_document_of_a_map_is_told_by_http(self):
        _, feeder, (http,) = self.fed("--aircraft-json", ":0")
        feeder.send(flight(0x4B1234, "SWR12", 10))

        def document():
            with urllib.request.urlopen(f"http://127.0.0.1:{http}/data/aircraft.json", timeout=PATIENCE) as answer:
                self.assertEqual("application/json", answer.headers["Content-Type"])
                return json.loads(answer.read())
        aircraft = wait_for("the aircraft", lambda: (read := document())["messages"] == 22 and read["aircraft"])[0]
        self.assertEqual(("4b1234", "SWR12", "A3", 22), tuple(aircraft[key] for key in
                                                              ("hex", "flight", "category", "messages")))

    def test_a_port_in_use_is_told(self):
        with socket.create_server(("127.0.0.1", 0)) as other:
            port = other.getsockname()[1]
            result = self.run_track("--json", f"listen://127.0.0.1:{port}", SAMPLE, status=1)
        self.assertEqual(f"trevallo: cannot listen on port {port}: Address already in use\n".encode(), result.stderr)


class Files(TrackTest):
    def test_the_file_of_a_map_is_whole_whenever_it_is_read(self):
        recording = self.simulated("a.avr", "--aircraft", 100, "--seconds", 100, "--format", "avr-time")
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

    def test_an_output_that_fails_is_told_at_once(self):
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

    def test_counts_at_the_end_are_told_below_the_table_or_on_standard_error(self):
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

    def test_a_table_of_which_only_the_beginning_is_read_is_no_fault_to_be_told(self):
        reading, writing = os.pipe()
        os.close(reading)
        with os.fdopen(writing, "wb") as unread:
            result = self.run_track(self.file("a.avr", flight(0x4B1234, "SWR12", 5)), stdout=unread, status=1)
        self.assertEqual(b"", result.stderr)

    def test_only_one_output_can_have_standard_output(self):
        result = self.run_track("--json", "-", "--sbs", "-", SAMPLE, status=2)
        self.assertEqual(b"trevallo: only one output can go to standard output\n", result.stderr)


class Screen(TrackTest):
    """In a terminal of tmux."""

    def setUp(self):
        super().setUp()
        self.name = f"trevallo-{os.getpid()}-{self._testMethodName[:30]}"
        self.addCleanup(subprocess.run, ["tmux", "-L", self.name, "kill-server"], capture_output=True)

    def tmux(self, *arguments):
        return subprocess.run(["tmux", "-L", self.name, "-f", os.devnull, *arguments], check=True, capture_output=True,
                              text=True, timeout=PATIENCE).stdout

    def screen(self):
        return self.tmux("capture-pane", "-p")

    def begin(self, *arguments):
        words = " ".join(f"'{word}'" for word in (PROGRAM, "track", *arguments))
        self.tmux("new-session", "-d", "-x", "80", "-y", "24",
                  f"echo before; {words}; echo after $?; stty -a | tr ';' '\\n' | grep -w echo; exec sleep 600")

    def shows(self, *texts):
        return wait_for(f"{texts} on\n{self.screen()}", lambda: all(text in self.screen() for text in texts))

    def rows(self):
        """The addresses from top to bottom."""
        return re.findall(r"\b(4B1234|3C5678|A00001)\b", self.screen())

    def recording(self):
        lines = flight(0x4B1234, "SWR12", 600) + flight(0x3C5678, "DLH9", 600, 47.0) + flight(0xA00001, "AAL1", 600, 46.0)
        return self.file("a.avr", b"".join(sorted(lines.splitlines(keepends=True))))

    def test_the_live_table_fills_the_terminal_and_leaves_it_as_it_was(self):
        self.begin("--table", "live", "--speed", "1", str(self.recording()))
        self.shows("4B1234", "3C5678", "A00001", "SWR12")
        self.tmux("send-keys", "i")
        wait_for("the order of addresses", lambda: self.rows()[:3] == ["3C5678", "4B1234", "A00001"])
        self.tmux("send-keys", "r")
        wait_for("the other order", lambda: self.rows()[:3] == ["A00001", "4B1234", "3C5678"])
        self.tmux("resize-window", "-x", "120", "-y", "12")
        wait_for("the wide table", lambda: max(map(len, self.screen().splitlines())) > 80 and "SWR12" in self.screen())
        self.tmux("send-keys", "q")
        self.shows("before", "after 0")
        self.assertNotIn("SWR12", self.screen())
        self.assertNotIn("-echo", self.screen().split())

    def test_what_was_said_meanwhile_is_told_afterwards(self):
        self.begin("--table", "live", "listen://127.0.0.1:0")
        self.tmux("send-keys", "q")
        self.shows("listen://127.0.0.1:0: listening on port", "after 0")

    def test_a_signal_leaves_the_terminal_as_it_was(self):
        self.begin("--table", "live", "--speed", "1", str(self.recording()))
        self.shows("4B1234")
        self.tmux("send-keys", "C-c")
        self.shows("before", "stopped by SIGINT after", "after 0")

    def test_a_closed_terminal_ends_the_run_which_is_saved(self):
        for ignored in ("", "trap '' HUP; "):
            database = self.folder / f"aircraft {len(ignored)}.csv"
            words = " ".join(f"'{word}'" for word in (PROGRAM, "track", "--table", "live", "--db", database, "--speed", "1",
                                                      self.recording()))
            self.tmux("new-session", "-d", "-x", "80", "-y", "24", ignored + "exec " + words)
            self.shows("4B1234")
            self.tmux("kill-server")
            wait_for("the database", database.exists)

    def test_a_run_that_was_started_to_outlive_its_terminal_does(self):
        program = self.running("--json", "-", *AT_NOON, "-", stdin=subprocess.PIPE,
                               preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN))
        program.process.stdin.write(flight(0x4B1234, "SWR12", 2))
        program.process.stdin.flush()
        wait_for("the aircraft", lambda: b"4B1234" in program.output)
        program.signal(signal.SIGHUP)
        program.signal(signal.SIGTERM)
        self.assertEqual(0, program.ended())
        self.assertEqual(["trevallo: stopped by SIGTERM after 5 frames"], program.lines)


del sys.argv[1:3]
unittest.main(verbosity=2)
