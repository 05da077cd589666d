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


def test_help():
    for command in (["decode"],):
        result = run(*command, "--help")
        expect(f"{command} has examples", result.returncode == 0 and b"Examples:\n  trevallo " in result.stdout, result)


with tempfile.TemporaryDirectory() as name:
    test_decode(pathlib.Path(name))
    test_help()

sys.exit(1 if faults else 0)
