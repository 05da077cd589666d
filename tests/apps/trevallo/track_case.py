# SPDX-License-Identifier: MIT
"""What the scripts that test `trevallo track` start with: their command line, PROGRAM SAMPLE [CLASS[.TEST]]..., and the
case that theirs derive from."""
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest
import urllib.request

from track_support import PATIENCE, Peer, Running, last_snapshots

PROGRAM, SAMPLE = map(os.path.abspath, sys.argv[1:3])
HEADER = "icao_addr,mops_version,airline\n"
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


def run_tests():
    """Those of the script, or those of them that the command line names."""
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]], verbosity=2)
