# SPDX-License-Identifier: MIT
"""commands_test.py PROGRAM SAMPLE: drives decode, convert, stats and db as a user would.

Prints each fault; exits 1 if there is one."""
import json
import os
import pathlib
import pty
import subprocess
import sys
import tempfile

PROGRAM, SAMPLE = sys.argv[1:3]
IDENTIFICATION = "8D4840D6202CC371C32CE0576098"
EVEN, ODD = "8D40621D58C382D690C8AC2863A7", "8D40621D58C386435CC412692AD6"
faults = 0


def run(*arguments, stdin=b"", env=None):
    return subprocess.run([PROGRAM, *map(str, arguments)], input=stdin, capture_output=True, timeout=60,
                          env={**os.environ, **(env or {})})


def expect(what, condition, result):
    global faults
    if not condition:
        faults += 1
        print(f"FAILED: {what}\n  exit {result.returncode}\n  out {result.stdout[-600:]}\n  err {result.stderr[-600:]}")


def expect_failure(what, status, *arguments, stdin=b"", about=""):
    result = run(*arguments, stdin=stdin)
    lines = result.stderr.decode(errors="replace").splitlines()
    expect(what, result.returncode == status and len(lines) == 1 and lines[0].startswith("trevallo: ")
           and about in lines[0], result)


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
    return subprocess.CompletedProcess(process.args, process.wait(timeout=60), output, b"")


def test_decode(folder):
    result = run("decode", IDENTIFICATION)
    expect("a frame is taken apart", result.returncode == 0 and b"CS=KLM1023" in result.stdout and not result.stderr,
           result)
    for spelling in (f"*{IDENTIFICATION};", f"@0123456789AB{IDENTIFICATION};", IDENTIFICATION.lower(),
                     " ".join(IDENTIFICATION[i:i + 2] for i in range(0, 28, 2))):
        same = run("decode", spelling)
        expect(f"{spelling} is the same frame", same.stdout == result.stdout, same)

    result = run("decode", EVEN, ODD)
    expect("a pair gives a position", result.stdout.count(b"52.26578, 3.93891") == 1, result)
    lines = [json.loads(line) for line in run("decode", "--json", EVEN, ODD).stdout.splitlines()]
    expect("each frame is a line of JSON", [line["address"] for line in lines] == ["40621D"] * 2
           and lines[0]["position"] is None and abs(lines[1]["position"]["longitude"] - 3.93891) < 1e-5, result)
    result = run("decode", "--version-of-mops", "2", EVEN)
    expect("a payload is read for one version", b"NIC_SUPP_B" in result.stdout and b"SAF" not in result.stdout, result)

    result = run("decode", "--explain", IDENTIFICATION)
    expect("the bits are shown without colours in a pipe", b"10001 101 010010000100000011010110" in result.stdout
           and b"\x1b" not in result.stdout, result)
    result = in_terminal("decode", "--explain", IDENTIFICATION, env={"NO_COLOR": ""})
    expect("the bits are coloured in a terminal", b"\x1b[36m10001\x1b[0m" in result.stdout, result)
    result = in_terminal("decode", "--explain", IDENTIFICATION, env={"NO_COLOR": "1"})
    expect("no colours where they are not wanted", b"\x1b" not in result.stdout and b"10001 101" in result.stdout, result)
    result = run("decode", "--log", "info", IDENTIFICATION)
    expect("the log is shown when asked for", b"[ModeSDecoder] Initialized." in result.stderr, result)

    expect_failure("a word", 1, "decode", "hello", about='"hello" is no frame')
    expect_failure("a good frame and a bad one", 1, "decode", IDENTIFICATION, "8D48401", about="8D48401")
    expect_failure("an AVR line without its end", 1, "decode", f"*{IDENTIFICATION}", about="ends with")
    expect_failure("no frame", 2, "decode", about="HEX")
    expect_failure("a version that is none", 2, "decode", "--version-of-mops", "3", IDENTIFICATION,
                   about="--version-of-mops")
    with open("/dev/full", "wb") as full:
        result = subprocess.run([PROGRAM, "decode", IDENTIFICATION], stdout=full, stderr=subprocess.PIPE, timeout=60)
        result.stdout = b""
        expect("an output that cannot be written", result.returncode == 1 and result.stderr.count(b"\n") == 1, result)


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
    expect("later files win, known airlines stay, conflicts are told", merged.read_text()
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
    expect("faults are told by line", result.returncode == 1
           and f'{bad}:3: "XYZ" is no aircraft address'.encode() in result.stdout
           and b"trevallo: 3 faults found" in result.stderr, result)
    mended = folder / "mended.csv"
    result = run("db", "mend", bad, "-o", mended)
    expect("what is good is kept", mended.read_text() == HEADER + "4840D6,2,KLM\n"
           and b"1 aircraft kept, 1 change, 2 rows dropped" in result.stderr, result)
    result = run("db", "mend", bad, "-o", "-")
    expect("a mended file goes to standard output", result.stdout.decode() == HEADER + "4840D6,2,KLM\n", result)
    result = run("track", "--db", mended, SAMPLE)
    expect("the tracker takes a mended file", result.returncode == 0 and "4840D6,2,KLM" in mended.read_text(), result)

    expect_failure("a database that is not there", 1, "db", "show", folder / "missing", about="cannot read")
    expect_failure("an output that cannot be written", 1, "db", "merge", good, "-o", folder / "no" / "x",
                   about="cannot write")
    expect_failure("a full disk", 1, "db", "merge", good, "-o", "/dev/full", about="cannot write")
    expect_failure("an address that is none", 2, "db", "show", "--address", "XYZ", good, about="hexadecimal")
    expect_failure("no output", 2, "db", "merge", good, about="--output")
    expect_failure("no action", 2, "db")


def test_help():
    for command in (["decode"], ["db"], ["db", "show"], ["db", "merge"], ["db", "check"], ["db", "mend"]):
        result = run(*command, "--help")
        expect(f"{command} has examples", result.returncode == 0 and b"Examples:\n  trevallo " in result.stdout, result)


for test in (test_decode, test_db):
    with tempfile.TemporaryDirectory() as name:
        test(pathlib.Path(name))
test_help()

sys.exit(1 if faults else 0)
