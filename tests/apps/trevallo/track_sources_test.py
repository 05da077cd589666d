# SPDX-License-Identifier: MIT
"""track_sources_test.py PROGRAM SAMPLE [CLASS[.TEST]]...: drives `trevallo track` as a user would:
sources that come: sockets on the loopback, pipes, a serial line."""
import gzip
import os
import pty
import signal
import subprocess
import time
import tty

from track_case import AT_NOON, PROGRAM, TrackTest, counted, fetched, run_tests
from track_support import (NOON, PATIENCE, Server, beast, flight, last_snapshots, seconds_to_probe, snapshots, stamp,
                           wait_for)


class Sources(TrackTest):
    def test_a_file_that_is_named_like_a_receiver_is_read(self):
        self.file("sky-12:30", flight(0x4B1234, "SWR12", 5))
        self.assertIn(b"SWR12", self.run_track("sky-12:30", cwd=self.folder).stdout)
        self.assertIn(b"cannot read " + bytes(self.folder), self.run_track(self.folder / "sky-12:31", status=1).stderr)

    def test_a_source_that_cannot_be_understood_is_wrong_usage(self):
        for source, fault in {
            "tcp://": "cannot use tcp://: it does not end with a port from 0 to 65535",
            "192.168.1.20:30005": "there is no file 192.168.1.20:30005: a receiver on the network is named "
                                  "tcp://192.168.1.20:30005",
            "receiver.local:30005": "there is no file receiver.local:30005: a receiver on the network is named "
                                    "tcp://receiver.local:30005",
            "192.168.1.20": "there is no file 192.168.1.20: a receiver on the network is named tcp://192.168.1.20:30005",
            "raspberrypi": "there is no file raspberrypi: a receiver on the network is named tcp://raspberrypi:30005",
            ":30005": "there is no file :30005: a receiver on this machine is named tcp://localhost:30005, "
                      "a port for feeders listen://30005",
            "tcp:receiver:30005": "there is no file tcp:receiver:30005: it is written tcp://receiver:30005",
            "TCP://receiver": "cannot use TCP://receiver: it names no port, like TCP://receiver:30005",
            "tcp://receiver:65536": "cannot use tcp://receiver:65536: it does not end with a port from 0 to 65535",
            "tcp://:30005": "cannot use the source tcp://:30005: it names no host, like tcp://localhost:30005",
            "listen://::1:30005": "cannot use listen://::1:30005: an address with colons needs brackets, "
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

    def test_schemes_are_taken_in_any_case(self):
        with Server() as receiver, Server() as reader:
            program = self.running("--avr", f"Tcp://127.0.0.1:{reader.port}", "--sbs", "LISTEN://127.0.0.1:0", *AT_NOON,
                                   f"TCP://127.0.0.1:{receiver.port}")
            program.ports(1)
            receiver.accept().sendall(flight(0x4B1234, "SWR12", 2))
            self.assertIn(b"8D4B1234", reader.accept().recv(4096))

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

    def test_a_receiver_that_is_not_there_yet_is_reported_once(self):
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
        program.said("disconnected")
        binary.send(flight(0x3C5678, "DLH9", 2, latitude=48.01, begin=NOON + 2_000,
                           encode=lambda frame, ms: beast(frame, stamp(ms))))
        wait_for("the other", lambda: counted("frames_total", fetched(http)) == 15)
        self.assertIn('source_up{source="listen://127.0.0.1:0"} 1', fetched(http))
        program.signal(signal.SIGTERM)
        self.assertEqual(0, program.ended())
        self.assertEqual({"4B1234": 5, "3C5678": 10},
                         {key[1]: shot["messages"] for key, shot in last_snapshots(program.output).items()})
        self.assertEqual(2, program.count(" connected"))

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
        program.said("was refused: there are 64 already")
        wait_for("the end", lambda: late.is_closed)
        feeders.pop().close()
        program.said("disconnected")
        self.peer(port).send(flight(0x4B1234, "SWR12", 2))
        wait_for("the frames", lambda: counted("frames_total", fetched(http)) == 5)

    def test_a_feeder_of_nonsense_is_named_and_the_others_stay(self):
        program = self.running("--json", "-", *AT_NOON, "listen://127.0.0.1:0")
        port = program.ports(1)[0]
        good, bad = self.peer(port), self.peer(port)
        bad.send(b"GET / HTTP/1.1\r\nHost: feeder\r\n\r\n" * 4_000)
        program.said("cannot detect the format of feeder 127.0.0.1 port ")
        good.send(flight(0x4B1234, "SWR12", 2))
        wait_for("the aircraft", lambda: b"4B1234" in program.output)

    def test_the_wrong_format_on_the_line_is_reported(self):
        with Server() as server:
            program = self.running("--json", "-", "--format", "beast", f"tcp://127.0.0.1:{server.port}")
            server.accept().sendall(flight(0x4B1234, "SWR12", 600))
            program.said("this looks like AVR text; expected Beast")

    def test_the_wrong_format_of_few_bytes_is_reported(self):
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
                program.said(f"cannot detect the format of what it sends: this looks like {name}{expected}")
                program.signal(signal.SIGTERM)
                self.assertEqual(0, program.ended())
                result = self.run_track("-", input=sent, status=1)
                self.assertEqual(f"trevallo: cannot detect the format of standard input: this looks like {name}{expected}\n",
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

    def test_a_serial_receiver_that_is_not_there_is_reported(self):
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


run_tests()
