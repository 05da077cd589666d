#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""make_seeds.py PROGRAM: writes the inputs that every target starts with into fuzz/corpus/TARGET.txt.

They come from the program's simulated traffic (seeded, so that they are always the same) and from a few edge cases of
each input's form, which the head of the target's source describes. What fuzzing has found worth keeping stands beside
them under other names, and stays as it is.
"""
import collections
import math
import pathlib
import struct
import subprocess
import sys

import corpus

CORPUS = pathlib.Path(__file__).resolve().parent / "corpus"
PROGRAM = sys.argv[1]

ESCAPE = 0x1A
FIND, AVR, PLAIN, RAW, HEX, _, DOUBLED = range(7)  # encodings of the framing target
SINGLE_BYTES = bytes([0, 0, 0, 0])   # lengths of pieces
UNEVEN = bytes([6, 22, 0, 99])
WHOLE = bytes([255, 255, 255, 255])


seeds = collections.defaultdict(dict)  # of each target, by name


def seed(target, name, content):
    seeds[target][name] = content


def simulated(encoding, aircraft=3, seconds=2, number=1, errors=0.0):
    arguments = ["simulate", "--mix", "adsb", "--format", encoding, "--aircraft", aircraft, "--seconds", seconds,
                 "--seed", number, "--bit-errors", errors, "--interrogators", 2]
    return subprocess.run([PROGRAM, *map(str, arguments)], capture_output=True, check=True).stdout


def frames(**traffic):
    return [bytes.fromhex(line.strip("*;")) for line in simulated("avr", **traffic).decode().split()]


def parity(frame):
    remainder = 0
    for bit in range(8 * len(frame)):
        remainder = remainder << 1 | (frame[bit // 8] >> (7 - bit % 8) & 1 if bit < 8 * len(frame) - 24 else 0)
        if remainder & 0x1000000:
            remainder ^= 0x1FFF409
    return remainder


def overlay(frame):
    """What is overlaid on the parity: the address of surveillance replies, the interrogator of all-call replies."""
    return parity(frame) ^ int.from_bytes(frame[-3:], "big")


def longest(stream, size, end=None):
    """The stream up to a size, or up to the last end before it."""
    return stream[:size] if end is None else stream[:stream.rfind(end, 0, size) + len(end)]


# Every byte in its place: 1A 32, time, level, frame.
BEAST_SHORT = bytes.fromhex("1A32 2A300754D4C0 80 5D4CA2D46B609F")
BEAST_LONG = bytes.fromhex("1A33 2A300754D4C0 80 8D4840D6202CC371C32CE0576098")
BEAST_MODE_AC = bytes.fromhex("1A31 2A300754D4C0 80 7500")
BEAST_STATUS = bytes.fromhex("1A34 000000000000 00 00112233445566778899AABBCCDD")
BEAST_ESCAPES = bytes.fromhex("1A33 1A1A1A311A1A 1A 1A1A1A331A1A1A1A1A1A1A1A1A1A")
AVR_EDGES = (b"*ABCD;\n:5D4CA2D46B609F;\n@2A300754D4C08D4840D6202CC371C32CE0576098;\n\n?silent;\n#head;\n*tail\n"
             b"*ABC;\n@AB;\n*;\n*ABCD;\r\n*1G0xZZ-1+2 3\t4;\n*8D4840D6202CC3")


def stream_seeds():
    beast = simulated("beast-plain", errors=0.2)
    avr = simulated("avr-time", errors=0.2)
    for name, kind, pieces, content in (
            ("beast", 4, UNEVEN, longest(beast, 500)),
            ("beast_in_single_bytes", 4, SINGLE_BYTES, longest(beast, 200)),
            ("beast_edges", 4, UNEVEN, b"noise" + BEAST_MODE_AC + BEAST_STATUS + BEAST_SHORT + BEAST_LONG + b"\x1A5\x1A"),
            ("beast_escapes", 4, SINGLE_BYTES, 3 * BEAST_ESCAPES + BEAST_SHORT),
            ("beast_cut", 4, WHOLE, BEAST_LONG + BEAST_LONG[:-1]),
            ("beast_escape_last", 4, UNEVEN, BEAST_SHORT + b"\x1A"),
            ("avr", 3, UNEVEN, longest(avr, 600, b"\n")),
            ("avr_edges", 3, SINGLE_BYTES, AVR_EDGES),
            ("raw_short", 2, WHOLE, BEAST_SHORT[9:]),
            ("raw_long", 2, WHOLE, BEAST_LONG[9:]),
            ("raw_neither", 2, WHOLE, BEAST_SHORT),
            ("hexadecimal", 1, UNEVEN, b"5D4CA2D46B609F\n"),
            ("unknown", 0, UNEVEN, BEAST_SHORT),
            ("none", 5, UNEVEN, BEAST_SHORT),
            ("empty", 4, WHOLE, b"")):
        seed("stream", name, bytes([kind]) + pieces + content)


def avr_seeds():
    seed("avr", "plain", longest(simulated("avr", errors=0.2), 600, b"\n"))
    seed("avr", "timed", longest(simulated("avr-time", errors=0.2), 900, b"\n"))
    seed("avr", "edges", AVR_EDGES)
    seed("avr", "mode_ac", b"*7500;\n@2A300754D4C07500;\n:0000;\n")
    seed("avr", "nul", b"*\x00\x00AB;\n*A\x00B\x00;\n\x00\n")
    seed("avr", "signs", b"*-1+2;\n*--+-;\n* 1\t2;\n*0x0X;\n*x0X0;\n*\r1\n1;\n")
    seed("avr", "longest", b"*" + b"A" * 4000 + b";\n")
    for digits in (0, 1, 2, 3, 4, 5, 14, 15, 28, 29, 40):
        seed("avr", f"digits_{digits}", b"".join(head + b"5" * digits + b";\n" for head in (b"*", b":", b"@")))
    seed("avr", "empty", b"")


# Kinds of steps of the road, by their number there.
(SQUITTER, _, DAMAGED, SHORT, LONG, ALL_CALL, OTHER, ANY, CLOCK, KILL_SILENT, KILL_ONE, VERSION, CHECKING, TAKE_OVER,
 TAKE_OVER_ANY, LIST, DECODE, QUALITY, RESET, CPR) = range(20)
SHORT_FORMATS, LONG_FORMATS = [0, 4, 5], [16, 20, 21]
LATER, ODD_TIME, HOSTS_TIME = 5, 255, 254


def road_step(frame, addresses):
    """The frame as a step; its address becomes one of the five that the road knows, by the order of appearance."""
    form = frame[0] >> 3

    def place(address):
        return addresses.setdefault(address, len(addresses)) % 5

    after = [LATER, 100]  # time, signal amplitude
    if form in (11, 17):
        head = [frame[0] & 7, place(int.from_bytes(frame[1:4], "big"))]
        return bytes([ALL_CALL, *head, overlay(frame) % 90, *after] if form == 11 else
                     [SQUITTER, *head, *frame[4:11], *after])
    head = [frame[0] & 7, *frame[1:4]]
    address = place(overlay(frame))
    if form in SHORT_FORMATS:
        return bytes([SHORT, SHORT_FORMATS.index(form), *head, address, *after])
    if form in LONG_FORMATS:
        return bytes([LONG, LONG_FORMATS.index(form), *head, address, *frame[4:11], *after])
    return b""


def road_of(**traffic):
    addresses = {}
    return b"".join(road_step(frame, addresses) for frame in frames(**traffic))


def road_seeds():
    host = {
        "kill": bytes([KILL_SILENT, 0]),
        "kill_one": bytes([KILL_ONE, 0, 1]),
        "clock": bytes([CLOCK, 2, 89]),
        "list": bytes([LIST, 0, 10]),
        "take_over": bytes([TAKE_OVER, 0, 0, KILL_SILENT, 0, TAKE_OVER, 0, 0]),
        "reset": bytes([TAKE_OVER, 0, 0, RESET, TAKE_OVER, 1, 0]),
        "checking": bytes([CHECKING, 0]),
        "quality": bytes(value for code in range(5, 22) for value in (QUALITY, 0, code, code % 8, 1)),
        "cpr": b"".join(bytes([CPR]) + struct.pack(">dii", latitude, a, b)
                        for latitude in (0.0, 10.5, -87.0, 1e300, math.nan) for a, b in ((-7, 60), (1, 0), (-2**31, -1))),
        "decode": bytes([DECODE, 0]) + bytes.fromhex("58C382D690C8AC"),
    }
    short_flight = road_of(aircraft=2, seconds=4)[:1200]
    for number in range(1, 5):
        seed("road", f"flight_{number}", road_of(aircraft=2 + number, seconds=8, number=number)[:2000])
    for version in range(4):
        seed("road", f"version_{version}", bytes([SQUITTER, 5, 0]) + bytes(7) + bytes([LATER, 1, VERSION, 0, version, 0, 0])
             + bytes(value for code in range(32) for value in (SQUITTER, 5, 0, code << 3 | 1, *[0x5A] * 6, LATER, 9)))
    for name, steps in host.items():
        seed("road", name, short_flight[:600] + steps + short_flight[600:] + steps)
    seed("road", "damaged", b"".join(bytes([DAMAGED, 0, 5, 0, *[0x20] * 7, bits, *range(40, 41 + bits), LATER, 1])
                                     for bits in range(3)))
    seed("road", "odd_times", b"".join(bytes([SQUITTER, 5, 0, *[0x58] * 7, choice, *[choice] * 8, 1])
                                       for choice in range(250, 256)))
    seed("road", "any_frames", b"".join(bytes([ANY, size, *[form << 3] * size, HOSTS_TIME, 1])
                                        for form in range(32) for size in (6, 7, 14)))
    seed("road", "uplink", bytes([ANY, 0x80 + 7, 0x28, 1, 2, 3, 4, 5, 6]))
    seed("road", "other_squitters", b"".join(bytes([OTHER, form, field, 0, *[0x58] * 7, LATER, 1])
                                             for form in range(2) for field in range(8)))
    seed("road", "reports", b"".join(bytes([TAKE_OVER_ANY, *[value] * 200]) for value in (0, 1, 0x40, 0x7F, 0xFF)))


def payload_seeds():
    seen = {}
    for frame in frames(aircraft=12, seconds=20):
        if frame[0] >> 3 == 17:
            seen.setdefault((frame[4] >> 3, frame[4] & 7), frame[4:11])
    for (code, subtype), payload in sorted(seen.items()):
        seed("payload", f"simulated_{code}_{subtype}", payload)
    seed("payload", "short", bytes(6))
    seed("payload", "long", bytes([0x58, *[0xFF] * 9]))
    seed("payload", "empty", b"")


def repair_seeds():
    for name, is_long, frame in (("short", 0, BEAST_SHORT[9:]), ("long", 1, BEAST_LONG[9:])):
        for damage in range(4):
            seed("repair", f"{name}_{damage}_damaged", bytes([is_long | damage << 1, 5, 20, 41]) + frame)
        seed("repair", f"{name}_in_parity", bytes([is_long | 2 << 1, 3, 8 * len(frame) - 1, 0]) + frame)
        seed("repair", f"{name}_same_place", bytes([is_long | 2 << 1, 7, 7, 0]) + frame)
        for parity_name, wanted in (("zero", 0), ("any", 0x123456), ("too_large", 0x1123456)):
            seed("repair", f"{name}_{parity_name}_wanted", bytes([0x80 | is_long]) + wanted.to_bytes(4, "big") + frame)
        seed("repair", f"{name}_too_short", bytes([is_long, 0, 0, 0]) + frame[:-1])
        seed("repair", f"{name}_longer", bytes([is_long | 1 << 1, 9, 0, 0]) + frame + b"more")


def database_seeds():
    header = b"icao_addr,mops_version,airline\n"
    seed("database", "rows", header + b"4840D6,2,KLM\n3C6586,1,\n000001,0,DLH\n")
    seed("database", "header_alone", header)
    seed("database", "no_header", b"4840D6,2,KLM\n3C6586,1,\n")
    seed("database", "no_line_feed", header + b"4840D6,2,KLM")
    seed("database", "carriage_returns", (header + b"4840D6,2,KLM\n").replace(b"\n", b"\r\n"))
    seed("database", "other_columns", b"remark,airline,icao_addr,mops_version\nx,KLM,4840D6,0\n")
    seed("database", "no_airline", b"icao_addr,mops_version\n4840D6,2\n")
    seed("database", "same_column_twice", b"icao_addr,icao_addr,mops_version,airline,airline\n1,2,2,A,B\n")
    seed("database", "quotes", header + b'"4840D6","2","K""LM"\n1,2,"a,b"\n2,2,"\n3,2,a"b,c\n4,2,"x"y\n5,2,""\n6,2,"""\n')
    seed("database", "blanks", header + b" 1,2, K L M \n 2 ,2,\t\n\n,,\n")
    seed("database", "nul", header + b"48\x000D6,2,K\x00M\n\x00\n1,2,\x00\n")
    seed("database", "bad_rows", header + b"0,2,A\n1,3,A\n1,-1,A\n1,x,A\nx,2,A\n,2,A\n1\n1,2\n123456789,2,A\n1,99999999999,A\n")
    seed("database", "odd_addresses", header + b"1FFFFFF,2,A\n0x1,2,B\n-1,2,C\n7FFFFFFF,2,D\n-80000000,2,E\n1 2,2,F\n")
    seed("database", "byte_order_mark", b"\xEF\xBB\xBF" + header + b"1,2,A\n")
    seed("database", "huge_cell", header + b"4840D6,2," + b"X" * 3000 + b"\n")
    seed("database", "many_cells", header + b"," * 1000 + b"\n")
    seed("database", "many_rows", header + b"".join(b"%06X,%d,ABC\n" % (row, row % 3) for row in range(60)))
    seed("database", "same_address", header + b"1,2,A\n1,0,B\n000001,1,C\n")
    seed("database", "comment", b"# comment\n" + header + b"#1,2,A\n")
    seed("database", "empty", b"")


def framing_seeds():
    plain, doubled = simulated("beast-plain", errors=0.2), simulated("beast", errors=0.2)
    avr = longest(simulated("avr", errors=0.2), 500, b"\n")
    raw = b"".join(frames())[:400]
    once, longer, endless = 0, 0xFE, 0xFF
    for name, form, made_of_it, pieces, content in (
            ("find_beast", FIND, once, UNEVEN, longest(plain, 500)),
            ("find_doubled_beast", FIND, once, UNEVEN, longest(doubled, 500)),
            ("find_avr", FIND, once, UNEVEN, avr),
            ("find_raw", FIND, once, UNEVEN, raw),
            ("find_nothing", FIND, once, UNEVEN, b"hello world\n"),
            ("plain_beast", PLAIN, once, SINGLE_BYTES, longest(plain, 300)),
            ("plain_beast_escapes", PLAIN, once, SINGLE_BYTES, 2 * BEAST_ESCAPES + BEAST_SHORT + b"\x1A"),
            ("doubled_beast", DOUBLED, once, SINGLE_BYTES, longest(doubled, 300)),
            ("broken_beast", DOUBLED, once, UNEVEN, BEAST_SHORT[:11] + BEAST_SHORT + BEAST_STATUS + b"\x1A9" + BEAST_LONG),
            ("beast_of_either_kind", PLAIN, once, UNEVEN, BEAST_SHORT + BEAST_LONG),
            ("avr", AVR, once, SINGLE_BYTES, avr[:200] + AVR_EDGES),
            ("avr_carriage_returns", AVR, once, UNEVEN, avr.replace(b"\n", b"\r\n") + b"*ABCD;\r"),
            ("raw", RAW, once, SINGLE_BYTES, raw[:100]),
            ("hex", HEX, once, SINGLE_BYTES, AVR_EDGES.replace(b"*", b"") + b"5D4CA2D46B609F\n8D4840D6202CC371C32CE0576098\r\n"),
            ("find_hex", FIND, once, UNEVEN, b"5D4CA2D46B609F\n" * 60),
            ("slow_beast", FIND, once, SINGLE_BYTES, longest(doubled, 1200)),
            ("raw_cut", RAW, once, UNEVEN, BEAST_LONG[9:] + BEAST_SHORT[9:-1]),
            ("longer_beast", FIND, longer, WHOLE, longest(plain, 200)),
            ("longer_avr", FIND, longer, UNEVEN, AVR_EDGES),
            ("beast_then_avr", FIND, longer, UNEVEN, BEAST_LONG + b"*8D4840D6202CC3710;\n\n\n"),
            ("plain_then_doubled_beast", PLAIN, longer, UNEVEN, longest(plain, 200) + longest(doubled, 200)),
            ("endless_line", AVR, endless, WHOLE, b"ABCD"),
            ("endless_lines", AVR, endless, WHOLE, AVR_EDGES + b"\n"),
            ("endless_plain_beast", PLAIN, endless, WHOLE, b"\x1A" + bytes(range(64))),
            ("endless_doubled_beast", DOUBLED, endless, WHOLE, longest(doubled, 200)),
            ("endless_frame", DOUBLED, endless, WHOLE, b"\x1A\x1A"),
            ("endless_raw", RAW, endless, WHOLE, raw[:100]),
            ("endless_unknown", FIND, endless, WHOLE, longest(doubled, 200)),
            ("empty", FIND, once, WHOLE, b"")):
        seed("framing", name, bytes([form, made_of_it]) + pieces + content)


def readings_seeds():
    """One frame of each format and of each type code that is simulated, and some that are not."""
    seen = {(frame[0] >> 3, frame[4] >> 3 if frame[0] >> 3 == 17 else 0): frame for frame in frames(seconds=20)}
    nothing_known, known = bytes(9), b"\1\0\0\x75\x30\1\0\0\0\x40" + b"\1" + struct.pack(">d", 420) + bytes(6)
    pair = struct.pack(">BIIBII", 0, 93000, 51372, 1, 74158, 50194)
    for (code, type_code), frame in sorted(seen.items()):
        seed("readings", f"simulated_{code}_{type_code}", bytes([0xFF]) + nothing_known + pair
             + struct.pack(">dd", 52.0, 4.0) + frame)
    for name, payload in (("selected", "85E42F31300000"), ("turn", "FFD263377FFCE0"), ("heading", "8F39F91A7E27C4"),
                          ("advisory", "30800006AF37BC"), ("weather", "185BD5CF400000"), ("capability", "10010080F50000")):
        frame = bytes.fromhex("A0001838" + payload + "000000")
        seed("readings", f"register_{name}", bytes([2]) + known + pair + struct.pack(">dd", 52.0, 4.0) + frame)
    for version in range(3):
        for name, payload in (("airspeed", "9B06B6AF189400"), ("target", "EA0DB898013C08"), ("status", "F8230002004AB8"),
                              ("surface", "3C24F3A6E02A6C"), ("emergency", "E1A2C8000000B0")):
            frame = bytes.fromhex("8D4B1A2C" + payload + "000000")
            seed("readings", f"squitter_{name}_{version}", bytes([version]) + nothing_known + pair
                 + struct.pack(">dd", -89.0, 179.9) + frame)
    seed("readings", "short", bytes(50))
    seed("readings", "empty", b"")


for make in (stream_seeds, avr_seeds, road_seeds, payload_seeds, repair_seeds, database_seeds, framing_seeds, readings_seeds):
    make()
for target, inputs in seeds.items():
    packed = CORPUS / f"{target}.txt"
    corpus.write(packed, corpus.read(packed) | inputs)
