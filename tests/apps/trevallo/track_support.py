# SPDX-License-Identifier: MIT
"""What the tests of `trevallo track` have in common: frames made here, the program while it runs, and its peers on the
network. Nothing sleeps for a fixed time: everything waits for what it needs, with much patience on a busy machine."""
import json
import os
import pathlib
import re
import socket
import subprocess
import threading
import time

from patience import PATIENCE


def wait_for(what, condition):
    """The first true value of the condition."""
    end = time.monotonic() + PATIENCE
    while not (value := condition()):
        if time.monotonic() > end:
            raise AssertionError(f"waited in vain for {what}")
        time.sleep(0.01)
    return value


# Frames: the parity and the compact position reporting of ICAO Annex 10 Vol. III and IV.

GENERATOR = 0xFFF409


def parity(data):
    remainder = 0
    for byte in data:
        remainder ^= byte << 16
        for _ in range(8):
            remainder = (remainder << 1 ^ (GENERATOR if remainder & 0x800000 else 0)) & 0xFFFFFF
    return remainder.to_bytes(3, "big")


def squitter(address, payload):
    data = bytes([17 << 3 | 5]) + address.to_bytes(3, "big") + payload
    return data + parity(data)


CHARACTERS = "#ABCDEFGHIJKLMNOPQRSTUVWXYZ##### ###############0123456789######"


def identification(address, callsign):
    bits = 4 << 51 | 3 << 48
    for place, character in enumerate(callsign.ljust(8)):
        bits |= CHARACTERS.index(character) << 42 - 6 * place
    return squitter(address, bits.to_bytes(7, "big"))


def longitude_zones(latitude):
    """The zones at moderate northern latitudes."""
    transitions = (10.470, 14.828, 18.186, 21.029, 23.545, 25.829, 27.939, 29.911, 31.772, 33.540, 35.229, 36.850,
                   38.412, 39.923, 41.387, 42.809, 44.194, 45.546, 46.867, 48.160, 49.428, 50.671, 51.893, 53.095)
    return 59 - sum(latitude >= transition for transition in transitions)


def position(address, latitude, longitude, odd, altitude=30000):
    def coordinate(degrees, zones):
        size = 360 / zones
        return int((degrees % size) / size * (1 << 17) + 0.5) & 0x1FFFF

    steps = (altitude + 1000) // 25
    code = (steps >> 4) << 5 | 1 << 4 | steps & 15
    y = coordinate(latitude, 60 - odd)
    x = coordinate(longitude, max(longitude_zones(latitude) - odd, 1))
    return squitter(address, (11 << 51 | code << 36 | odd << 34 | y << 17 | x).to_bytes(7, "big"))


def damaged(frame, bit):
    return (int.from_bytes(frame, "big") ^ 1 << bit).to_bytes(len(frame), "big")


def stamp(ms):
    """Second of the day and nanosecond."""
    return ms % 86_400_000 // 1000 << 30 | ms % 1000 * 1_000_000


def avr(frame, ms=None):
    return (f"*{frame.hex()};\n" if ms is None else f"@{stamp(ms):012X}{frame.hex().upper()};\n").encode()


def beast(frame, count, signal=100):
    content = count.to_bytes(6, "big") + bytes([signal]) + frame
    return b"\x1a" + (b"3" if len(frame) == 14 else b"2") + content.replace(b"\x1a", b"\x1a\x1a")


NOON = 12 * 3_600_000
UNDATED = 86_400_000  # recordings without a date are of the second day of 1970


def flight(address, callsign, seconds, latitude=48.0, longitude=11.0, begin=NOON, encode=avr):
    """An aircraft that flies north at 480 knots, heard twice a second."""
    stream = bytearray()
    for half in range(2 * seconds):
        ms = begin + 500 * half
        if half % 10 == 0:
            stream += encode(identification(address, callsign), ms)
        stream += encode(position(address, latitude + half / 900, longitude, half % 2), ms)
    return bytes(stream)


def snapshots(lines):
    return [json.loads(line) for line in lines.splitlines()]


def last_snapshots(lines):
    """The last snapshot of each aircraft, by source and address."""
    return {(shot["source"], shot["icaoAddressString"]): shot for shot in snapshots(lines)}


class Running:
    """The program at work, its standard error read line by line."""

    def __init__(self, command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, **settings):
        self.process = subprocess.Popen(command, stdin=stdin, stdout=stdout, stderr=subprocess.PIPE, **settings)
        self.lines = []
        self.output = b""
        self._threads = [threading.Thread(target=self._read_lines)]
        if stdout == subprocess.PIPE:
            self._threads.append(threading.Thread(target=self._read_output))
        for thread in self._threads:
            thread.start()

    def _read_lines(self):
        with self.process.stderr as stream:
            for line in stream:
                self.lines.append(line.decode(errors="replace").rstrip("\n"))

    def _read_output(self):
        with self.process.stdout as stream:
            while piece := stream.read1(65536):
                self.output += piece

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.kill()
        self.ended()

    def said(self, text, times=1):
        wait_for(f"{times} times {text!r} among {self.lines}", lambda: self.count(text) >= times)

    def count(self, text):
        return sum(text in line for line in self.lines)

    def ports(self, count):
        """The ports that the program listens on, in the order in which it opened them."""
        def found():
            matches = [re.search(r": listening on port (\d+)$", line) for line in list(self.lines)]
            return [int(match.group(1)) for match in matches if match]
        wait_for(f"{count} ports among {self.lines}", lambda: len(found()) >= count)
        return found()

    def signal(self, number):
        self.process.send_signal(number)

    def ended(self):
        """The exit status, when all that was written is read."""
        status = self.process.wait(timeout=PATIENCE)
        for thread in self._threads:
            thread.join(timeout=PATIENCE)
        if self.process.stdin:
            self.process.stdin.close()
        return status


def seconds_to_probe(port):
    """The seconds until a silent connection from this local port, or None when it is not kept alive."""
    for line in pathlib.Path("/proc/net/tcp").read_text(encoding="ascii").splitlines()[1:]:
        fields = line.split()
        is_keep_alive, ticks = (int(number, 16) for number in fields[5].split(":"))
        if int(fields[1].rpartition(":")[2], 16) == port and is_keep_alive == 2:
            return ticks / os.sysconf("SC_CLK_TCK")
    return None


class Peer:
    """A connection to the program, of which all that comes is kept."""

    def __init__(self, port, reads=True, buffer=None):
        self.socket = socket.socket()
        if buffer:
            self.socket.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, buffer)
        self.socket.settimeout(PATIENCE)
        self.socket.connect(("127.0.0.1", port))
        self.received = bytearray()
        self.is_closed = False
        if reads:
            self._thread = threading.Thread(target=self._read)
            self._thread.start()

    def _read(self):
        try:
            while piece := self.socket.recv(1 << 16):
                self.received += piece
        except OSError:
            pass
        self.is_closed = True

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def send(self, data):
        self.socket.sendall(data)

    def close(self):
        try:
            self.socket.shutdown(socket.SHUT_RDWR)
        except OSError:
            pass
        self.socket.close()


class Server:
    """A receiver on the network to which the program connects."""

    def __init__(self, port=0):
        self.listener = socket.create_server(("127.0.0.1", port))
        self.listener.settimeout(PATIENCE)
        self.port = self.listener.getsockname()[1]
        self.connection = None

    def accept(self):
        self.connection, _ = self.listener.accept()
        return self.connection

    def close(self):
        if self.connection:
            self.connection.close()
        self.listener.close()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()
