# SPDX-License-Identifier: MIT
"""commands_test.py PROGRAM SAMPLE: drives decode, convert, stats and db as a user would.

Prints each fault; exits 1 if there is one."""
import json
import os
import pathlib
import pty
import re
import subprocess
import tempfile

from patience import PATIENCE
from program_support import PROGRAM, SAMPLE, expect, expect_failure, finish, run

IDENTIFICATION = "8D4840D6202CC371C32CE0576098"
EVEN, ODD = "8D40621D58C382D690C8AC2863A7", "8D40621D58C386435CC412692AD6"
SURFACE_EVEN, SURFACE_ODD = "8C4841753AAB238733C8CD4020B1", "8C4841753A8A35323FAEBDAC702D"
COMM_B = "A0001838CA380031440000F24177"


def in_terminal(*arguments, env=None):
    """What the program writes to a terminal of 80 columns."""
    main, terminal = pty.openpty()
    subprocess.run(["stty", "cols", "80", "-onlcr"], stdin=terminal, check=True)
    process = subprocess.Popen([PROGRAM, *map(str, arguments)], stdout=terminal, stderr=terminal, stdin=terminal,
                               env={**os.environ, "TERM": "xterm", **(env or {})})
    os.close(terminal)
    output = b""
    while True:
        try:
            piece = os.read(main, 65536)
        except OSError:  # the other end is closed
            break
        if not piece:
            break
        output += piece
    os.close(main)
    return subprocess.CompletedProcess(process.args, process.wait(timeout=PATIENCE), output, b"")


def test_decode(folder):
    result = run("decode", IDENTIFICATION)
    expect("a frame is read", result.returncode == 0 and re.search(rb"^  Callsign +KLM1023$", result.stdout, re.M)
           and not result.stderr, result)
    for spelling in (f"*{IDENTIFICATION};", f"@0123456789AB{IDENTIFICATION};", IDENTIFICATION.lower(),
                     " ".join(IDENTIFICATION[i:i + 2] for i in range(0, 28, 2))):
        same = run("decode", spelling)
        expect(f"{spelling} is the same frame", same.stdout == result.stdout, same)

    result = run("decode", EVEN, ODD)
    expect("a pair gives a position", result.stdout.count(b"52.26578, 3.93891") == 1, result)
    lines = [json.loads(line) for line in run("decode", "--json", EVEN, ODD).stdout.splitlines()]
    expect("each frame is a line of JSON", [line["address"] for line in lines] == ["40621D"] * 2
           and lines[0]["position"] is None and abs(lines[1]["position"]["longitude"] - 3.93891) < 1e-5, result)
    expect("the library's value is beside the standards' where it is another one", lines[0]["formatVersion"] == 2
           and lines[0]["values"]["altitude"] == 38000 and lines[0]["library"] == {"altitude": 38050}, result)
    result = run("decode", "--version-of-mops", "2", EVEN)
    expect("a payload is read for one version", b"  ADS-B version     2\n" in result.stdout, result)
    result = run("decode", SURFACE_EVEN, SURFACE_ODD)
    expect("without a place near it a pair on the surface gives no position", b"Position  " not in result.stdout, result)
    result = run("decode", "--location", "51.99,4.375", SURFACE_EVEN, SURFACE_ODD)
    expect("with one it does", result.stdout.count(b"\n  Position          52.32") == 1, result)
    result = run("decode", COMM_B)
    expect("a Comm-B reply shows its register", b"4,0, selected vertical intention; score" in result.stdout, result)

    result = run("decode", "--explain", IDENTIFICATION)
    expect("the bits are shown without colours in a pipe", b"10001 101 010010000100000011010110" in result.stdout
           and b"\x1b" not in result.stdout, result)
    result = in_terminal("decode", "--explain", IDENTIFICATION, env={"NO_COLOR": ""})
    expect("the bits are coloured in a terminal", b"\x1b[36m10001\x1b[0m" in result.stdout, result)
    result = in_terminal("decode", "--explain", IDENTIFICATION, env={"NO_COLOR": "1"})
    expect("no colours where they are not wanted", b"\x1b" not in result.stdout and b"10001 101" in result.stdout, result)
    result = run("decode", "--log", "info", IDENTIFICATION)
    expect("the log is shown when asked for", b"[ModeSDecoder] Initialized." in result.stderr, result)

    result = run("decode", "--values", "library", IDENTIFICATION)
    expect("the library's own reading is shown", b"  Reply             CA: 5; AA: 4840D6; ME: 202CC371C32CE0\n"
           in result.stdout and b"TC=ACID, EC=0, CS=KLM1023" in result.stdout, result)
    result = run("decode", "--values", "library", "--version-of-mops", "2", EVEN)
    expect("so is that of one version", b"NIC_SUPP_B" in result.stdout and b"SAF" not in result.stdout, result)
    result = run("decode", "--values", "library", "--json", EVEN, ODD)
    frames = [json.loads(line) for line in result.stdout.splitlines()]
    expect("and it as JSON", "formatVersion" not in frames[0] and "description" in frames[0]
           and abs(frames[1]["position"]["latitude"] - 52.26578) < 1e-5, result)
    expect_failure("readings of nobody", 2, "decode", "--values", "other", EVEN, about="--values")
    expect_failure("a place for the library", 2, "decode", "--values", "library", "--location", "0,0", EVEN,
                   about="--location")

    lines = f"*{EVEN};\n*{ODD};\n".encode()
    result = run("decode", "--file", "-", stdin=lines)
    expect("a recording is taken apart", result.stdout == run("decode", EVEN, ODD).stdout, result)
    result = run("decode", "--json", "--file", SAMPLE)
    frames = [json.loads(line) for line in result.stdout.splitlines()]
    positions = [frame for frame in frames if frame["position"]]
    expect("the whole sample is taken apart", len(frames) == 14662 and len(positions) > 1000
           and all(45 < frame["position"]["latitude"] < 51 for frame in positions), result)
    expect_failure("lines that are not frames", 1, "decode", "--from", "avr", "--file", "-", stdin=b"noise\n",
                   about="lines of standard input that are not frames: 1")
    expect_failure("a word", 1, "decode", "hello", about='"hello" is not a frame')
    expect_failure("a good frame and a bad one", 1, "decode", IDENTIFICATION, "8D48401", about="8D48401")
    expect_failure("an AVR line without its end", 1, "decode", f"*{IDENTIFICATION}", about="ends with")
    expect_failure("no frame", 2, "decode", about="HEX")
    expect_failure("a version that is none", 2, "decode", "--version-of-mops", "3", IDENTIFICATION,
                   about="--version-of-mops")
    with open("/dev/full", "wb") as full:
        result = subprocess.run([PROGRAM, "decode", IDENTIFICATION], stdout=full, stderr=subprocess.PIPE, timeout=PATIENCE)
        result.stdout = b""
        expect("an output that cannot be written", result.returncode == 1 and result.stderr.count(b"\n") == 1, result)


def test_decode_by_the_standards(folder):
    lines = f"*{EVEN};\n*7700;\n*{ODD};\n".encode()
    result = run("decode", "--jsonl", "-", stdin=lines)
    frames = [json.loads(line) for line in result.stdout.splitlines()]
    expect("each Mode S frame is a line", [(frame["i"], frame["hex"]) for frame in frames] == [(0, EVEN), (1, ODD)]
           and frames[0]["altitude"] == 38000 and frames[0]["cpr_lat"] == 93000 and not result.stderr, result)
    expect("the recording may be named by --file", run("decode", "--file", "-", "--jsonl", stdin=lines).stdout
           == result.stdout, result)
    result = run("decode", "--jsonl", "--tracked", "--interval", "0.5", "-", stdin=lines)
    found = [json.loads(line) for line in result.stdout.splitlines()]
    expect("a pair gives both their places", [line["i"] for line in found] == [0, 1] and found[1]["icao"] == "40621D"
           and abs(found[1]["latitude"] - 52.26578) < 1e-5 and abs(found[1]["longitude"] - 3.93891) < 1e-5, result)
    result = run("decode", "--jsonl", "--tracked", "--interval", "11", "-", stdin=lines)
    expect("frames far apart make no pair", result.returncode == 0 and not result.stdout, result)

    frames = run("decode", "--jsonl", SAMPLE).stdout.splitlines()
    found = [json.loads(line) for line in run("decode", "--jsonl", "--tracked", SAMPLE).stdout.splitlines()]
    places = [line for line in found if "latitude" in line]
    expect("the whole sample is read", len(frames) == 14662 and len(places) > 1000
           and all(45 < line["latitude"] < 51 for line in places), result)
    csv = f"seconds,frame\n0.25,{EVEN}\n0.75,{ODD}\n".encode()
    read = run("decode", "--jsonl", "-", stdin=csv)
    result = run("decode", "--jsonl", "-", stdin=lines)
    expect("lines of seconds and digits are read, too", read.stdout == result.stdout and not read.stderr, read)
    result = run("decode", "--jsonl", "--tracked", "-", stdin=csv)
    expect("they have times of their own", len(result.stdout.splitlines()) == 2 and not result.stderr, result)
    result = run("decode", "--jsonl", "--tracked", "-", stdin=csv.replace(b"0.75", b"11.75"))
    expect("which tell how far they are apart", result.returncode == 0 and not result.stdout, result)
    expect_failure("lines among them that are no frames", 1, "decode", "--jsonl", "-", stdin=csv + b"noise\n",
                   about="lines of standard input that are not frames: 1")
    expect_failure("text that is no recording", 1, "decode", "--jsonl", "-", stdin=b"a,b\nc,d\n" * 10,
                   about="standard input")

    result = run("decode", "--jsonl", "-", stdin=b"")
    expect("an empty recording has no lines", result.returncode == 0 and not result.stdout, result)

    expect_failure("no time stamps and no interval", 2, "decode", "--jsonl", "--tracked", "-", stdin=lines,
                   about="--interval")
    expect_failure("two recordings", 2, "decode", "--jsonl", SAMPLE, SAMPLE, about="one recording")
    expect_failure("two readings at once", 2, "decode", "--jsonl", "--json", SAMPLE, about="--json")
    expect_failure("a place without --tracked", 2, "decode", "--jsonl", "--location", "0,0", SAMPLE, about="--tracked")
    expect_failure("--jsonl of the library", 2, "decode", "--jsonl", "--values", "library", SAMPLE, about="--values")
    expect_failure("--tracked alone", 2, "decode", "--tracked", SAMPLE, about="--jsonl")
    expect_failure("--interval alone", 2, "decode", "--jsonl", "--interval", "1", SAMPLE, about="--tracked")
    expect_failure("an interval that is none", 2, "decode", "--jsonl", "--tracked", "--interval", "0", SAMPLE,
                   about="--interval")
    expect_failure("lines that are not frames", 1, "decode", "--from", "avr", "--jsonl", "-", stdin=b"noise\n",
                   about="lines of standard input that are not frames: 1")


def test_convert(folder):
    sample = pathlib.Path(SAMPLE).read_bytes()
    for encoding in ("avr-time", "beast-plain"):
        for ending in ("", ".gz", ".zst"):
            there, back = folder / (encoding + ending), folder / "back"
            result = run("convert", "--to", encoding, "-o", there, SAMPLE)
            expect(f"{there.name} is written", result.returncode == 0 and b"14662 frames written as " in result.stderr
                   and not result.stdout, result)
            again = run("convert", "--to", encoding, "-o", folder / "again", there)
            expect(f"{there.name} is read without a word", again.stderr.count(b"\n") == 1
                   and (ending or (folder / "again").read_bytes() == there.read_bytes()), again)
    run("convert", "--to", "beast", "-o", back, folder / "beast-plain.zst")
    expect("Beast comes back as it was", back.read_bytes() == sample, result)
    packed = [path for path in folder.iterdir() if path.suffix in (".gz", ".zst")]
    expect("files are compressed by name", all(path.stat().st_size < path.with_suffix("").stat().st_size
                                               for path in packed) and len(packed) == 4, result)
    subprocess.run(["gzip", "-t", folder / "avr-time.gz"], check=True)

    lines = run("convert", "--to", "avr-time", SAMPLE).stdout.splitlines()
    expect("time stamps are kept", lines[0] == b"@2A3000023B808D59302E582DD399CFA3EA91AEAE;" and len(lines) == 14662, result)
    result = run("convert", "--to", "avr-time", "-", stdin=f"*{IDENTIFICATION};\n".encode())
    expect("a line without a time stamp stays one", result.stdout == f"*{IDENTIFICATION};\n".encode()
           and b"1 frames had no time stamp" in result.stderr, result)
    replies = b"*7700;\n" + f"*{IDENTIFICATION};\n".encode()
    result = run("convert", "--to", "bin", "-", stdin=replies)
    expect("what the encoding cannot carry is reported", result.stdout == bytes.fromhex(IDENTIFICATION)
           and b"1 Mode A/C replies left out: no place for them in raw binary" in result.stderr, result)
    result = run("convert", "--from", "avr", "--to", "hex", "-", stdin=replies + b"noise\n")
    expect("what is not a frame is reported", result.stdout == f"7700\n{IDENTIFICATION}\n".encode()
           and b"standard input: Lines that are not frames: 1" in result.stderr, result)

    inplace = folder / "inplace"
    inplace.write_bytes(replies)
    result = run("convert", "--to", "hex", "-o", inplace, inplace)
    expect("a file may become its own conversion", inplace.read_text() == f"7700\n{IDENTIFICATION}\n", result)
    result = run("convert", "--to", "hex", "-o", inplace, folder / "missing")
    expect("a failure leaves the output as it was", result.returncode == 1
           and inplace.read_text() == f"7700\n{IDENTIFICATION}\n"
           and not [path for path in folder.iterdir() if path.name.startswith(".")], result)
    result = in_terminal("convert", "--to", "beast", SAMPLE)
    expect("no bytes for terminals", result.returncode == 1 and b"name a file with -o" in result.stdout
           and b"\x1a" not in result.stdout, result)

    expect_failure("a missing recording", 1, "convert", "--to", "avr", folder / "missing", about="missing")
    expect_failure("a full disk", 1, "convert", "--to", "avr", "-o", "/dev/full", SAMPLE, about="cannot write")
    target = folder / "new" / "folder" / "x.avr"
    result = run("convert", "--to", "avr", "-o", target, SAMPLE)
    expect("a folder that is not there is made", result.returncode == 0 and target.stat().st_size > 0, result)
    expect_failure("a folder in a file", 1, "convert", "--to", "avr", "-o", target / "folder" / "x", SAMPLE,
                   about=f"cannot write {target}/folder/x: no folder can be made for it: Not a directory")
    expect_failure("an output on the network", 2, "convert", "--to", "avr", "-o", "tcp://localhost:1", SAMPLE,
                   about="it cannot go to the network: name a file")
    expect_failure("no encoding", 2, "convert", SAMPLE, about="--to")
    expect_failure("an encoding that is none", 2, "convert", "--to", "morse", SAMPLE, about="avr|avr-time|beast")


def test_stats(folder):
    result = run("stats", SAMPLE)
    expect("the sample is described", result.returncode == 0 and not result.stderr
           and b"12:00:00.000 to 12:00:59.994 of an unknown day" in result.stdout
           and b"244.4 frames/s" in result.stdout and b"DF17 extended squitter               7712   52.6 %  ####"
           in result.stdout and b"and 15 more" in result.stdout and result.stdout.isascii(), result)
    expect("the same recording gives the same report", run("stats", SAMPLE, env={
        "TZ": "Asia/Tokyo", "LC_ALL": "de_DE.UTF-8"}).stdout == result.stdout, result)

    report = json.loads(run("stats", "--json", "--date", "2024-05-01", SAMPLE).stdout)
    expect("the sample is described for programs", report["frames"] == 14662 and report["aircraftCount"] == 25
           and len(report["aircraft"]) == 25 and sum(report["formats"].values()) == 14662
           and sum(report["parity"].values()) == 14662 and sum(report["confidence"].values()) == 14662
           and report["time"]["first"] == "2024-05-01T12:00:00.000Z" and report["time"]["gaps"] == []
           and sum(report["time"]["framesByInterval"]) == 14662, result)
    result = run("stats", SAMPLE, SAMPLE)
    expect("each recording has its report", result.stdout.count(b"Encoding    Beast") == 2, result)

    plain = folder / "plain.avr"
    run("convert", "--to", "avr", "-o", plain, SAMPLE)
    result = run("stats", plain)
    expect("a recording without time stamps has no rates", b"no time stamps" in result.stdout
           and b"Rate" not in result.stdout and b"Aircraft    25" in result.stdout, result)
    result = run("stats", "-", stdin=b"")
    expect("an empty recording is described", result.returncode == 0 and b"it is empty" in result.stdout, result)
    result = run("stats", "--from", "avr", "-", stdin=b"*7700;\nnoise\n")
    expect("what is dropped is reported", b"0 Mode S, 1 Mode A/C" in result.stdout
           and b"1  Lines that are not frames.\n" in result.stdout, result)
    result = in_terminal("stats", SAMPLE, env={"LC_ALL": "C.UTF-8"})
    lines = result.stdout.decode().splitlines()
    expect("bars are blocks in a terminal that has them and fit it", any("███" in line for line in lines)
           and max(map(len, lines)) <= 80, result)
    result = in_terminal("stats", SAMPLE, env={"LC_ALL": "C"})
    expect("bars are plain in a terminal that has no blocks", b"####" in result.stdout and result.stdout.isascii(), result)

    expect_failure("a missing recording", 1, "stats", folder / "missing", about="missing")
    expect_failure("text that is no recording", 1, "stats", "-", stdin=b"hello\n" * 20, about="standard input")
    expect_failure("a date that is none", 2, "stats", "--date", "yesterday", SAMPLE, about="YYYY-MM-DD")
    expect_failure("no recording", 2, "stats", about="FILE")


HEADER = "icao_addr,mops_version,airline\n"


def test_db(folder):
    good, other, bad = folder / "good.csv", folder / "other.csv", folder / "bad.csv"
    good.write_text(HEADER + "4840D6,2,KLM\n4CA2D4,1,RYR\n")
    other.write_text(HEADER + "4840D6,2,\n4CA2D4,2,RYR\n3C6444,0,DLH\n")
    bad.write_text(HEADER + "4840d6,2,KLM\nXYZ,2,ABC\n4CA2D4,7,RYR\n")

    result = run("db", "show", good)
    expect("a database is shown", result.stdout == b"ICAO    Version  Airline\n4840D6  2        KLM\n"
           b"4CA2D4  1        RYR\n\n2 aircraft\n" and not result.stderr, result)
    result = run("db", "show", "--airline", "ry", "--json", good)
    expect("aircraft of an airline as JSON", result.stdout
           == b'{"icaoAddress":"4CA2D4","mopsVersion":1,"airline":"RYR"}\n', result)
    result = run("db", "show", "--address", "48", "-", stdin=good.read_bytes())
    expect("aircraft by address from standard input", b"4840D6" in result.stdout and b"1 aircraft" in result.stdout
           and b"4CA2D4" not in result.stdout, result)
    result = run("db", "show", bad)
    expect("rows that cannot be shown are counted", result.returncode == 0
           and b"bad.csv: 2 rows left out" in result.stderr and b"1 aircraft" in result.stdout, result)

    merged = folder / "merged.csv"
    result = run("db", "merge", good, other, "-o", merged)
    expect("later files win, known airlines stay, conflicts are reported", merged.read_text()
           == HEADER + "3C6444,0,DLH\n4840D6,2,KLM\n4CA2D4,2,RYR\n"
           and b"4CA2D4 was version 1 RYR, is version 2 RYR in " in result.stderr
           and b"1 conflict, later files won" in result.stderr, result)
    run("db", "merge", good, other, "-o", good)
    expect("an input may be the output", good.read_text() == merged.read_text(), result)
    expect("nothing is left beside it", sorted(path.name for path in folder.iterdir())
           == ["bad.csv", "good.csv", "merged.csv", "other.csv"], result)

    result = run("db", "check", good)
    expect("a good file has no faults", result.returncode == 0 and result.stdout.endswith(b"3 aircraft, 0 faults\n"),
           result)
    result = run("db", "check", good, bad)
    expect("faults are reported by line", result.returncode == 1
           and f'{bad}:3: "XYZ" is not an aircraft address'.encode() in result.stdout
           and b"trevallo: 3 faults found" in result.stderr, result)
    mended = folder / "mended.csv"
    result = run("db", "mend", bad, "-o", mended)
    expect("what is good is kept", mended.read_text() == HEADER + "4840D6,2,KLM\n"
           and b"1 aircraft kept, 1 change, 2 rows dropped" in result.stderr, result)
    result = run("db", "mend", bad, "-o", "-")
    expect("a mended file goes to standard output", result.stdout.decode() == HEADER + "4840D6,2,KLM\n", result)
    result = run("track", "--db", mended, SAMPLE)
    expect("the tracker takes a mended file", result.returncode == 0 and "4840D6,2,KLM" in mended.read_text(), result)

    result = run("db", "mend", bad, "-o", bad)
    expect("what is dropped from a file is kept beside it", bad.read_text() == HEADER + "4840D6,2,KLM\n"
           and "XYZ" in (folder / "bad.csv.bak").read_text(), result)
    (folder / "bad.csv.bak").rename(bad)
    for words in (("merge", good, bad), ("mend", good)):
        content = bad.read_bytes()
        expect_failure(f"{words[0]} over rows that cannot be read", 1, "db", *words, "-o", bad,
                       about=f'{bad}:3: "XYZ" is not an aircraft address')
        expect("they stay", bad.read_bytes() == content, result)
    long, content = folder / "long.csv", HEADER + 9 * "4840D6,2,KLM\n"
    long.write_text(content)
    result = run("db", "merge", other, "-o", long)
    expect("a file that shrinks by more than half is kept", long.read_text() == HEADER
           + "3C6444,0,DLH\n4840D6,2,\n4CA2D4,2,RYR\n" and (folder / "long.csv.bak").read_text() == content, result)

    expect_failure("a database that is not there", 1, "db", "show", folder / "missing", about="cannot read")
    for words in (("merge", good), ("mend", good)):
        target = folder / words[0] / "folder" / "x.csv"
        result = run("db", *words, "-o", target)
        expect(f"{words[0]} makes a folder that is not there", target.read_bytes() == good.read_bytes(), result)
        expect_failure(f"{words[0]} into a folder in a file", 1, "db", *words, "-o", good / "folder" / "x",
                       about=f"cannot write {good}/folder/x: no folder can be made for it: Not a directory")
    expect_failure("a full disk", 1, "db", "merge", good, "-o", "/dev/full", about="cannot write")
    expect_failure("an address that is none", 2, "db", "show", "--address", "XYZ", good, about="hexadecimal")
    expect_failure("no output", 2, "db", "merge", good, about="--output")
    expect_failure("no action", 2, "db")


def test_progress(folder):
    target = folder / "sky.beast"
    for seconds in (60, 600):  # what is done at once shows nothing
        result = in_terminal("simulate", "--aircraft", 1000, "--seconds", seconds, "--format", "beast", "--output", target)
        reading = in_terminal("stats", target)
        if result.stdout and reading.stdout.startswith(b"\r"):
            break
    line = rf"\r\x1b\[K{re.escape(str(target))}: \d+ %, \d+ frames, \d+ frames/s, \d+ s left"
    expect("making a long recording shows how far it is, and takes the line away", result.returncode == 0
           and re.fullmatch(rf"({line})+\r\x1b\[K", result.stdout.decode()), result)
    expect("so does reading it", reading.returncode == 0 and re.match(line, reading.stdout.decode()), reading)


def test_log(folder):
    recording, database = folder / "a.avr", folder / "aircraft.csv"
    recording.write_text(f"*{IDENTIFICATION};\n")
    database.write_text(HEADER + "4840D6,2,KLM\n")
    speaks = {"decode", "track"}  # where the core library decodes
    for command in (("decode", IDENTIFICATION), ("track", "--values", "library", recording), ("convert", "--to", "hex", recording),
                    ("stats", recording), ("simulate", "--seconds", 1, "--aircraft", 1), ("db", "show", database),
                    ("db", "merge", database, "-o", "-"), ("db", "check", database), ("db", "mend", database, "-o", "-")):
        log = folder / "logs" / command[0] / "log"
        result = run(*command, "--log", "info", "--log-file", log)
        expect(f"{command} has a log", result.returncode == 0 and b"Initialized" not in result.stderr
               and ("[ModeSDecoder] Initialized." in log.read_text()) == (command[0] in speaks), result)
        log.unlink()
        expect_failure(f"a log of {command} that cannot be written", 1, *command, "--log-file", recording / "log",
                       about="cannot write the log")
        expect_failure(f"a log of {command} on standard output", 2, *command, "--log-file", "-", about="name a file")


def test_help():
    for command in (["decode"], ["convert"], ["stats"], ["db"], ["db", "show"], ["db", "merge"], ["db", "check"], ["db", "mend"]):
        result = run(*command, "--help")
        expect(f"{command} has examples", result.returncode == 0 and b"Examples:\n  trevallo " in result.stdout, result)


for test in (test_decode, test_decode_by_the_standards, test_convert, test_stats, test_db, test_progress, test_log):
    with tempfile.TemporaryDirectory() as name:
        test(pathlib.Path(name))
test_help()

finish()
