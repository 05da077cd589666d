# SPDX-License-Identifier: MIT
"""program_test.py PROGRAM SAMPLE: drives the built program as a user would. Prints each fault; exits 1 if there is one."""
import fcntl
import gzip
import json
import os
import pathlib
import signal
import struct
import subprocess
import tempfile
import termios
import time

from patience import PATIENCE
from program_support import PROGRAM, SAMPLE, expect, expect_failure, finish, run

IDENTIFICATION = "*8D4840D6202CC371C32CE0576098;\n"


def started(*arguments):
    """The program with standard input left open, once it has taken hold of the signals and read what there is."""
    process = subprocess.Popen([PROGRAM, *arguments], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                               stderr=subprocess.PIPE, preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_DFL))
    process.stdin.write(IDENTIFICATION.encode() * 20)
    process.stdin.flush()
    status = pathlib.Path(f"/proc/{process.pid}/status")
    for _ in range(500):
        caught = [line.split()[1] for line in status.read_text().splitlines() if line.startswith("SigCgt")]
        if int(caught[0], 16) & 1 << signal.SIGTERM - 1:
            break
        time.sleep(0.01)
    while unread(process.stdin) > 0 and process.poll() is None:
        time.sleep(0.01)
    return process


def unread(pipe):
    """The bytes in a pipe that nobody has read yet."""
    return struct.unpack("i", fcntl.ioctl(pipe, termios.FIONREAD, bytes(4)))[0]


def handed_on(process, data, pieces):
    """Writes data into the input of a process in pieces of these sizes, the last one repeated, each when the process has
    taken the one before."""
    at = 0
    while at < len(data) and process.poll() is None:
        size = pieces.pop(0) if len(pieces) > 1 else pieces[0]
        process.stdin.write(data[at:at + size])
        process.stdin.flush()
        at += size
        while unread(process.stdin) > 0 and process.poll() is None:
            time.sleep(0.001)


def finished(process):
    out, err = process.communicate(timeout=PATIENCE)
    return subprocess.CompletedProcess(process.args, process.returncode, out, err)


with tempfile.TemporaryDirectory() as name:
    folder = pathlib.Path(name)
    for stop in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        pages, database = folder / f"pages {stop}", folder / f"aircraft {stop}.csv"
        process = started("track", "--format", "avr", "--html", str(pages), "--db", str(database), "-")
        process.send_signal(stop)
        process.wait(timeout=PATIENCE)  # with its input still open
        result = finished(process)
        expect(f"{stop.name} ends the reading and leaves table, pages and database", result.returncode == 0
               and b"4840D6  KLM1023" in result.stdout and (pages / "4840D6.html").is_file() and database.is_file()
               and result.stderr == f"trevallo: stopped by {stop.name} after 20 frames\n".encode(), result)
    process = started("stats", "--from", "avr", "-")
    process.send_signal(signal.SIGHUP)
    process.wait(timeout=PATIENCE)
    result = finished(process)
    expect("a closed terminal ends the reading of other commands too", result.returncode == 0
           and b"stopped by SIGHUP" in result.stderr and b"20" in result.stdout, result)
    process = started("track", "--format", "avr", "-")
    process.stdout.close()
    process.send_signal(signal.SIGINT)
    process.stdin.close()
    status = process.wait(timeout=PATIENCE)
    expect("an output that went away is an error", status == 1, subprocess.CompletedProcess([], status, b"", process.stderr.read()))

    avr = folder / "one.avr"
    avr.write_text(IDENTIFICATION)

    result = run("track", str(avr))
    expect("a line of AVR becomes a row of the table", result.returncode == 0 and b"4840D6  KLM1023" in result.stdout
           and not result.stderr, result)
    result = run("track", "-", stdin=IDENTIFICATION.encode())
    expect("standard input is read", b"4840D6  KLM1023" in result.stdout, result)
    result = run("track", "-")
    expect("empty input gives an empty table", result.returncode == 0 and b"0 frames" in result.stdout, result)
    result = run("track", str(avr), str(avr))
    expect("several files are read one after the other", b"2 frames" in result.stdout, result)

    pages, database = folder / "pages", folder / "aircraft.csv"
    result = run("track", "--html", str(pages), "--db", str(database), "--altitude-check", "--timeout", "3600", SAMPLE)
    expect("the sample is tracked", result.returncode == 0 and b"25 aircraft" in result.stdout, result)
    expect("each aircraft has a page", len(list(pages.glob("??????.html"))) == 25
           and (pages / "index.html").is_file(), result)
    expect("the database is written", database.read_text().startswith("icao_addr,mops_version,airline\n"), result)
    again = run("track", "--db", str(database), "--log", "debug", SAMPLE)
    expect("the database is read and the log is shown", b"from aircraft DB." in again.stderr, again)
    quiet = run("track", "--log", "error", SAMPLE)
    expect("nothing is logged below the level", not quiet.stderr, quiet)

    streams = {}
    for encoding in ("avr", "avr-time", "beast-plain", "beast"):
        path = folder / encoding
        result = run("simulate", "--mix", "adsb", "--aircraft", "15", "--seconds", "30", "--seed", "5",
                     "--format", encoding, "--output", str(path))
        expect(f"{encoding} is simulated", result.returncode == 0 and path.stat().st_size > 10_000, result)
        expect(f"{encoding} is what all commands call so",
               run("convert", "--from", encoding, "--to", encoding, str(path)).stdout == path.read_bytes(), result)
        table = run("track", str(path)).stdout
        streams[encoding] = [line.split()[1:9] for line in table.splitlines()[2:17]]
        expect(f"{encoding} is tracked", b"15 aircraft" in table, result)
    expect("every encoding gives the same positions", streams["avr-time"] == streams["beast-plain"]
           == streams["beast"], result)
    result = run("track", "--format", "beast", str(folder / "beast"))
    expect("escapes are undoubled on request", b"15 aircraft" in result.stdout, result)
    result = run("track", "--format", "beast-plain", str(folder / "beast-plain"))
    expect("escapes are left alone on request", b"15 aircraft" in result.stdout, result)
    raw = b"".join(bytes.fromhex(line[1:-1]) for line in (folder / "avr").read_text().split())
    result = run("track", "--format", "bin", "-", stdin=raw)
    expect("raw binary is tracked when named", b"15 aircraft" in result.stdout, result)
    result = run("track", "-", stdin=raw)
    expect("raw binary is found out", b"15 aircraft" in result.stdout, result)

    changed = folder / "changed"
    changed.write_bytes((folder / "beast-plain").read_bytes() + (folder / "avr-time").read_bytes())
    result = run("track", str(changed))
    expect("a recording that changes its encoding is read up to there, with a word about it", result.returncode == 0
           and b"15 aircraft" in result.stdout and result.stderr.count(b"\n") == 1
           and b"this looks like AVR text; expected Beast without doubled escapes" in result.stderr, result)
    cut = folder / "cut"
    cut.write_bytes((folder / "beast-plain").read_bytes()[:-5])
    result = run("track", str(cut))
    expect("a recording that ends within a frame is read without a word", result.returncode == 0
           and b"15 aircraft" in result.stdout and not result.stderr, result)

    for encoding in ("avr-time", "beast-plain", "beast"):
        path = folder / encoding
        whole = path.read_bytes()
        table = run("track", str(path)).stdout
        process = subprocess.Popen([PROGRAM, "track", "-"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE)
        handed_on(process, whole, [1] * 50 + [4001])
        result = finished(process)
        expect(f"{encoding} in a pipe whose writer pauses anywhere is the same traffic", result.stdout == table
               and not result.stderr, result)

        growing = folder / "growing"
        growing.write_bytes(whole[:len(whole) // 2])
        frames_before = int(run("track", str(growing)).stdout.splitlines()[-1].split()[0])
        with open(growing, "ab", buffering=0) as writer:
            process = subprocess.Popen([PROGRAM, "track", str(growing)], stdout=subprocess.PIPE, stderr=subprocess.PIPE)
            for at in range(len(whole) // 2, len(whole), 4001):
                writer.write(whole[at:at + 4001])
                time.sleep(0.001)
        result = finished(process)
        expect(f"a growing recording of {encoding} is read as far as it has come", result.returncode == 0
               and not result.stderr and frames_before <= int(result.stdout.splitlines()[-1].split()[0])
               <= int(table.splitlines()[-1].split()[0]), result)

        for missing in range(1, 25):
            result = run("track", "-", stdin=whole[:-missing])
            expect(f"{encoding} without its last {missing} bytes is read up to there", result.returncode == 0
                   and b"15 aircraft" in result.stdout and not result.stderr, result)
        for length in range(1, 60, 3):
            result = run("track", "-", stdin=whole[:length])
            expect(f"{encoding} of {length} bytes gives a table or one line that says why not",
                   result.returncode == (1 if result.stderr else 0) and result.stderr.count(b"\n") <= 1, result)

    truth = folder / "truth.jsonl"
    arguments = ("simulate", "--seconds", "20", "--start", "06:00:00", "--place", "48.35,11.79", "--bit-errors", "0.1")
    result = run(*arguments, "--truth", str(truth))
    lines = [json.loads(line) for line in truth.read_text().splitlines()]
    states = [line for line in lines if "latitude" in line]
    registers = [line for line in lines if "hex" in line]
    expect("all that is true of each aircraft is written for each second", len(states) == 20 * 21
           and {line["time"] for line in states} == set(range(21_600, 21_621)), result)
    expect("the register of each Comm-B reply is written", len(registers) > 20 and {line["bds"] for line in registers}
           > {"2,0", "4,0", "5,0", "6,0"} and any(line["damaged"] for line in registers), result)
    expect("the truth is in the order of its times",
           [line["time"] for line in lines] == sorted(line["time"] for line in lines), result)
    sent = [line[13:-1] for line in result.stdout.decode().split()]
    expect("the replies are those that are sent", {line["hex"] for line in registers} < set(sent), result)
    expect("the same seed gives the same bytes", result.stdout == run(*arguments).stdout, result)
    expect("another mix gives other traffic", result.stdout != run(*arguments, "--mix", "adsb").stdout, result)
    expect_failure("a mix that is none", 2, "simulate", "--mix", "few", about="--mix")
    expect_failure("two outputs on standard output", 2, "simulate", "--truth", "-", about="only one output")

    expect_failure("a missing file", 1, "track", str(folder / "missing"), about="missing")
    expect_failure("a folder", 1, "track", name, about=f"trevallo: cannot read {name}")
    expect_failure("a number for a name", 2, "track", "--format", "3", str(avr), about="--format")
    expect_failure("a timeout that is none", 2, "track", "--timeout", "nan", str(avr), about="timeout")
    gone = folder / "gone.csv"
    result = subprocess.run(["sh", "-c", f"'{PROGRAM}' track --db '{gone}' '{SAMPLE}' | true"], capture_output=True, timeout=PATIENCE)
    expect("the database is saved when the output goes away", gone.is_file(), result)
    expect_failure("an unknown format", 1, "track", "-", stdin=b"hello\n" * 20, about="cannot detect the format")
    expect_failure("a bad option", 2, "track", "--nonsense", str(avr))
    expect_failure("a bad value", 2, "track", "--format", "ascii", str(avr), about="--format")
    encodings = "avr|avr-time|beast|beast-plain"
    for command, option, names in (("track", "--format", f"auto|{encodings}|bin|hex"), ("simulate", "--format", encodings),
                                   ("convert", "--from", f"{encodings}|bin|hex"), ("stats", "--from", f"{encodings}|bin|hex"),
                                   ("decode", "--from", f"{encodings}|bin|hex")):
        expect_failure(f"an encoding that {command} does not know", 2, command, f"{option}=morse",
                       about=f"trevallo: {option}: an encoding is one of {names} (see ")
        result = run(command, "--help")
        expect(f"{command} names its encodings", f"{option} {names}".encode() in result.stdout, result)
    expect_failure("an encoding that simulate does not write", 2, "simulate", "--format", "bin",
                   about=f"trevallo: --format: an encoding is one of {encodings} (see ")
    expect_failure("no file", 2, "track")
    expect_failure("no command", 2)
    for word, meant in {"tracks": "track", "trakc": "track", "sim": "simulate", "Decode": "decode", "bd": None,
                        "frobnicate": None}.items():
        hint = f"; did you mean '{meant}'?" if meant else ""
        expect_failure(f"the command {word}", 2, word, str(avr), about=f"trevallo: there is no command '{word}'{hint} (see ")
    expect_failure("a command of a command", 2, "db", "shwo", str(avr), about="'shwo'; did you mean 'show'?")
    expect_failure("a negative timeout", 2, "track", "--timeout", "-5", str(avr))
    expect_failure("pages in a file", 1, "track", "--html", str(avr / "x"), str(avr), about="folder")
    expect_failure("a database that cannot be written", 1, "track", "--db", str(avr / "db.csv"), str(avr),
                   about="database")
    expect_failure("a place beyond the pole", 2, "simulate", "--place", "91,0", about="LAT,LON")
    expect_failure("a time that is none", 2, "simulate", "--start", "25:00:00", about="HH:MM:SS")
    expect_failure("a share above one", 2, "simulate", "--bit-errors", "2")
    for number in ("nan", "inf", "-inf", "-1", "ten", ""):
        for command, option in (("track", "--max-range"), ("track", "--timeout"), ("track", "--speed"), ("track", "--location"),
                                ("stats", "--aircraft"), ("simulate", "--seconds"), ("simulate", "--bit-errors"),
                                ("simulate", "--radius"), ("simulate", "--aircraft"), ("simulate", "--interrogators")):
            source = [] if command == "simulate" else [str(avr)]
            expect_failure(f"{option} {number}", 2, command, f"{option}={number}", *source, about=option)
    expect_failure("no aircraft", 2, "simulate", "--aircraft", "0")
    for option in ("--output", "--truth"):
        target = folder / f"new{option}" / "folder" / "x"
        result = run("simulate", "--aircraft", "1", "--seconds", "1", option, str(target))
        expect(f"{option} makes its folder", result.returncode == 0 and target.stat().st_size > 0, result)
        expect_failure(f"{option} in a file", 1, "simulate", option, str(avr / "folder" / "x"),
                       about=f"cannot write {avr}/folder/x")
        expect_failure(f"{option} on the network", 2, "simulate", option, "tcp://localhost:1", about="name a file")
    packed, plain = folder / "sky.avr.gz", folder / "sky.avr"
    for target in (packed, plain):
        result = run("simulate", "--seconds", "5", "--output", str(target))
    expect("a stream is compressed by its name", gzip.decompress(packed.read_bytes()) == plain.read_bytes(), result)
    before = plain.read_bytes()
    process = subprocess.Popen([PROGRAM, "simulate", "--aircraft", "100", "--seconds", "1e7", "--output", str(plain)],
                               stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    beside = lambda: [path for path in folder.iterdir() if path.name.startswith(".") and path.stat().st_size > 0]
    while not beside() and process.poll() is None:
        time.sleep(0.01)
    expect("a stream in the making leaves the old file", plain.read_bytes() == before,
           subprocess.CompletedProcess([], 0, b"", b""))
    process.send_signal(signal.SIGINT)
    result = finished(process)
    expect("a signal ends a stream with what it has", result.returncode == 0 and plain.read_bytes() != before
           and plain.read_bytes().endswith(b";\n") and not beside()
           and result.stderr == b"trevallo: stopped by SIGINT\n", result)
    expect_failure("a full disk", 1, "simulate", "--output", "/dev/full", about="cannot write")
    with open("/dev/full", "wb") as full:
        result = subprocess.run([PROGRAM, "track", str(avr)], stdout=full, stderr=subprocess.PIPE, timeout=PATIENCE)
        result.stdout = b""
        expect("a table that cannot be written", result.returncode == 1 and result.stderr.count(b"\n") == 1, result)

    for command in ([], ["track"], ["simulate"]):
        result = run(*command, "--help")
        expect(f"help of {command}", result.returncode == 0 and b"--" in result.stdout, result)
    result = run("--version")
    expect("the version", result.stdout.startswith(b"trevallo 1.0.2 ("), result)

finish()
