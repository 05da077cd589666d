# SPDX-License-Identifier: MIT
"""track_clock_test.py PROGRAM SAMPLE [CLASS[.TEST]]...: drives `trevallo track` as a user would:
receivers on the network whose time stamps count different things, heard as time goes by."""
import signal
import time

from track_case import TrackTest, run_tests
from track_support import Server, beast, last_snapshots, position, stamp, wait_for

HOUR = 3_600_000
POSITIONS = 8  # of each aircraft
AIRCRAFT = 4
LAST_LATITUDE = 48 + (POSITIONS - 1) / 900
TICKS = "its time stamps count 12 MHz"
TIMES_OF_DAY = "its time stamps are times of day"


def host_ms():
    return time.time_ns() // 1_000_000


class LiveClocks(TrackTest):
    def heard(self, count_of):
        """The program, the last snapshot of an aircraft among others whose frames have the counts of the moments in which they
        are sent, and the last moment."""
        with Server() as server:
            program = self.running("--json", "-", f"tcp://127.0.0.1:{server.port}")
            connection = server.accept()
            begin = time.monotonic()
            for half in range(POSITIONS):
                time.sleep(max(begin + half / 2 - time.monotonic(), 0))
                sent = host_ms()
                frames = (position(0x4B1234 + i, 48 + i + half / 900, 11.0, half % 2) for i in range(AIRCRAFT))
                connection.sendall(b"".join(beast(frame, count_of(sent)) for frame in frames))

            def last():
                shots = last_snapshots(program.output.rpartition(b"\n")[0])
                shot = shots.get((None, "4B1234"))
                return shot and shot["latitude"] and shot["latitude"] > LAST_LATITUDE - 0.0005 and shot
            shot = wait_for("the last position", last)
            program.signal(signal.SIGTERM)
            self.assertEqual(0, program.ended())
        self.assertAlmostEqual(LAST_LATITUDE, shot["latitude"], 4)
        self.assertEqual(0, shot["positionsRefused"])
        return program, shot, sent

    def test_times_of_day_hours_off_the_hosts_clock_are_kept(self):
        for offset, told in ((-6 * HOUR, "6 h 0 min behind"), (7 * HOUR, "7 h 0 min ahead of")):
            with self.subTest(told):
                program, last, sent = self.heard(lambda ms, offset=offset: stamp(ms + offset))
                self.assertEqual(1, program.count(f"{TIMES_OF_DAY}, {told} this host's clock"), program.lines)
                self.assertEqual(0, program.count(TICKS))
                self.assertEqual(sent + offset, last["lastUpdateMs"])
                self.assertEqual(sent + offset, last["positionLastUpdateMs"])

    def test_times_of_day_of_the_hosts_clock_need_no_word(self):
        program, last, sent = self.heard(stamp)
        self.assertEqual(0, program.count("time stamps"), program.lines)
        self.assertEqual(sent, last["lastUpdateMs"])

    def test_ticks_of_12_mhz_go_on_from_the_first_arrival(self):
        begin = host_ms()
        program, last, sent = self.heard(lambda ms: 10 ** 12 + (ms - begin) * 12_000)
        self.assertEqual(1, program.count(TICKS), program.lines)
        self.assertEqual(0, program.count(TIMES_OF_DAY))
        self.assertIn(last["lastUpdateMs"], range(sent - 1, host_ms() + 1))
        self.assertEqual(last["lastUpdateMs"], last["positionLastUpdateMs"])


run_tests()
