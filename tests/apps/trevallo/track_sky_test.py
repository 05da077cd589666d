# SPDX-License-Identifier: MIT
"""track_sky_test.py PROGRAM SAMPLE [CLASS[.TEST]]...: drives `trevallo track` as a user would:
which replies make and move aircraft, and what is remembered of them."""
import signal

from track_case import HEADER, TrackTest, counted, run_tests
from track_support import NOON, avr, damaged, flight, identification, position


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

    def test_more_aircraft_than_the_library_can_number_are_shown(self):
        recording = self.file("a.avr", b"".join(avr(identification(0x100000 + number, "A"), NOON + number)
                                                for number in range(5_000)))
        self.assertEqual(5_000, len(self.table(recording).splitlines()) - 4)

    def test_values_of_the_library_are_its_own(self):
        recording = self.file("a.avr", flight(0x4B1234, "SWR12", 1))
        own = self.last_of("--values", "library", recording)[None, "4B1234"]
        standard = self.last_of(recording)[None, "4B1234"]
        self.assertEqual((1, None), (own["trackId"], standard["trackId"]))
        self.assertNotEqual(own["altitudeBaro"], standard["altitudeBaro"])

    def test_positions_out_of_range_are_refused_and_counted(self):
        recording = self.file("a.avr", flight(0x4B1234, "SWR12", 1) + flight(0x3C5678, "DLH9", 1, 52.0, 11.0))
        near = ("--location", "48,11", "--max-range", "100", recording)
        last = self.last_of(*near)
        self.assertAlmostEqual(48.001, last[None, "4B1234"]["latitude"], 3)
        self.assertIsNone(last[None, "3C5678"]["latitude"])
        self.assertEqual(1, last[None, "3C5678"]["positionsRefused"])
        self.assertEqual(1, self.count_of("positions_out_of_range_total", *near))
        self.assertEqual(0, self.count_of("positions_out_of_range_total", recording))

    def test_a_full_table_of_the_library_loses_replies_counted_and_drops_the_oldest(self):
        def squitters(first, count, ms):
            return b"".join(avr(identification(first + number, "A"), ms + number) for number in range(count))

        room = self.file("a.avr", squitters(0x100000, 4095, NOON) + squitters(0x200000, 100, NOON + 5_000))
        self.assertEqual(100, self.count_of("table_full_total", "--values", "library", room))
        late = self.file("b.avr", squitters(0x100000, 4095, NOON) + squitters(0x200000, 50, NOON + 60_000))
        counts = self.folder / "counts"
        rows = {line.split()[1] for line in self.table("--values", "library", "--prometheus", counts, late).splitlines()[2:-2]}
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

    def test_a_database_of_which_rows_cannot_be_read_is_left_as_it_is(self):
        recording = self.file("one.avr", flight(0x4B1234, "SWR12", 10))
        row = "4840D6,2,KLM\n"
        for text, fault in {row: "1: the header is missing",
                            HEADER + "# mine\n" + row: '2: "# mine" is not an aircraft address (000001 to FFFFFF)',
                            HEADER.replace("airline", "operator") + row: "1: the header does not name all columns"}.items():
            with self.subTest(text=text):
                database = self.file("aircraft.csv", text.encode())
                result = self.run_track("--db", database, recording, status=1)
                self.assertEqual(f'trevallo: {database}:{fault}; the file stays as it is ("trevallo db mend" keeps what is '
                                 'good)\n', result.stderr.decode())
                self.assertIn(b"SWR12", result.stdout)
                self.assertEqual(text, database.read_text())

    def test_what_is_wrong_with_the_database_is_reported_at_the_start(self):
        database = self.file("aircraft.csv", b"a picture\n")
        program = self.running("--db", database, "listen://127.0.0.1:0")
        program.said("the header is missing, and 1 more fault;")
        program.ports(1)
        self.assertLess(next(i for i, line in enumerate(program.lines) if "header" in line),
                        next(i for i, line in enumerate(program.lines) if "listening" in line))
        program.signal(signal.SIGTERM)
        self.assertEqual(1, program.ended())
        self.assertEqual(1, program.count("header"))
        self.assertEqual("a picture\n", database.read_text())

    def test_a_database_with_carriage_returns_is_read(self):
        recording = self.file("one.avr", flight(0x4B1234, "SWR12", 10))
        rows = "".join(f"{address:06X},2,KLM\n" for address in range(0x484000, 0x484000 + 2999))
        database = self.file("aircraft.csv", (HEADER + rows).replace("\n", "\r\n").encode())
        self.assertEqual(b"", self.run_track("--db", database, recording).stderr)
        self.assertEqual(HEADER + rows + "4B1234,0,SWR\n", database.read_bytes().decode())


run_tests()
