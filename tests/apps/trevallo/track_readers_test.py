# SPDX-License-Identifier: MIT
"""track_readers_test.py PROGRAM SAMPLE [CLASS[.TEST]]...: drives `trevallo track` as a user would:
readers of outputs on the network."""
import json
import signal
import socket
import time
import urllib.error
import urllib.request

from track_case import AT_NOON, SAMPLE, TrackTest, counted, fetched, run_tests
from track_support import (NOON, PATIENCE, Server, avr, beast, damaged, flight, identification, position, snapshots,
                           stamp, wait_for)


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
        program.said("disconnected")
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

    def test_more_than_64_readers_are_refused_which_is_reported_once(self):
        program, feeder, (port,) = self.fed("--avr", "listen://127.0.0.1:0")
        readers = [self.peer(port) for _ in range(64)]
        for late in (self.peer(port), self.peer(port)):
            wait_for("the end", lambda late=late: late.is_closed)
        self.assertEqual(1, program.count("was refused: there are 64 already"))
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

    def test_what_does_not_reach_a_reader_is_reported(self):
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

    def test_counts_are_served_by_http(self):
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

    def test_the_document_of_a_map_is_served_by_http(self):
        _, feeder, (http,) = self.fed("--aircraft-json", ":0")
        feeder.send(flight(0x4B1234, "SWR12", 10))

        def document():
            with urllib.request.urlopen(f"http://127.0.0.1:{http}/data/aircraft.json", timeout=PATIENCE) as answer:
                self.assertEqual("application/json", answer.headers["Content-Type"])
                return json.loads(answer.read())
        aircraft = wait_for("the aircraft", lambda: (read := document())["messages"] == 22 and read["aircraft"])[0]
        self.assertEqual(("4b1234", "SWR12", "A3", 22), tuple(aircraft[key] for key in
                                                              ("hex", "flight", "category", "messages")))

    def test_an_output_that_cannot_be_understood_is_wrong_usage(self):
        for target, fault in {
            "udp://reader:1": "cannot write to udp://reader:1: outputs go to files, -, :PORT, listen://PORT and "
                              "tcp://HOST:PORT",
            "tcp://reader": "cannot use tcp://reader: it names no port, like tcp://reader:30005",
            ":reader": "cannot use :reader: it does not end with a port from 0 to 65535",
        }.items():
            with self.subTest(target):
                result = self.run_track("--json", target, SAMPLE, status=2, cwd=self.folder)
                self.assertEqual(f"trevallo: {fault}\n".encode(), result.stderr)
        self.assertEqual([], list(self.folder.iterdir()))

    def test_a_port_in_use_is_reported(self):
        with socket.create_server(("127.0.0.1", 0)) as other:
            port = other.getsockname()[1]
            result = self.run_track("--json", f"listen://127.0.0.1:{port}", SAMPLE, status=1)
        self.assertEqual(f"trevallo: cannot listen on port {port}: Address already in use\n".encode(), result.stderr)


run_tests()
