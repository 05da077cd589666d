# SPDX-License-Identifier: MIT
"""track_screen_test.py PROGRAM SAMPLE [CLASS[.TEST]]...: drives `trevallo track` as a user would:
the live table in a terminal of tmux."""
import os
import re
import signal
import subprocess

from track_case import AT_NOON, PROGRAM, TrackTest, run_tests
from track_support import PATIENCE, flight, wait_for


class Screen(TrackTest):
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

    def test_messages_during_the_live_table_are_shown_afterwards(self):
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


run_tests()
