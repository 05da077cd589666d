# SPDX-License-Identifier: MIT
"""track_recordings_test.py PROGRAM SAMPLE [CLASS[.TEST]]...: drives `trevallo track` as a user would:
recordings, their encodings and their times."""
import gzip

from track_case import TrackTest, run_tests
from track_support import NOON, UNDATED, avr, beast, flight, identification, position, snapshots


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
        self.assertLessEqual(max(shot.get("positionAge", 0) for shot in shots), 1.0)
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

    def test_the_wrong_format_is_reported(self):
        text = self.file("text", flight(0x4B1234, "SWR12", 600))
        result = self.run_track("--format", "beast", text)
        self.assertEqual(1, result.stderr.count(b"\n"), result.stderr)
        self.assertIn(b"this looks like AVR text; expected Beast", result.stderr)


run_tests()
