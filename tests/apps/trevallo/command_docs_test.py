# SPDX-License-Identifier: MIT
"""command_docs_test.py PROGRAM SAMPLE PAGE...: what the pages show after "$ COMMAND" is what the command prints.

The commands of a page run one after the other in a folder that holds sample.beast. A line "..." stands for any lines."""
import os
import pathlib
import re
import subprocess
import sys
import tempfile

from patience import PATIENCE

PROGRAM, SAMPLE, *PAGES = sys.argv[1:]
faults = 0


def examples(page):
    """Each command of the page's console blocks with the lines shown after it."""
    for block in re.findall(r"^```console\n(.*?)^```$", page, re.M | re.S):
        for example in re.split(r"^\$ ", block, flags=re.M)[1:]:
            command, _, shown = example.partition("\n")
            while command.endswith("\\"):
                line, _, shown = shown.partition("\n")
                command = command[:-1] + line.strip()
            yield command, shown.rstrip("\n")


def matches(shown, printed):
    parts = [re.escape(part) for part in re.split(r"^\.\.\.$", shown, flags=re.M)]
    return re.fullmatch("(?s:.*)".join(parts), printed) is not None


def check(page, folder):
    global faults
    count = 0
    for command, shown in examples(page.read_text(encoding="utf-8")):
        count += 1
        result = subprocess.run(command, shell=True, cwd=folder, text=True, stdout=subprocess.PIPE,
                                stderr=subprocess.STDOUT, timeout=PATIENCE)
        if not matches(shown, result.stdout.rstrip("\n")):
            faults += 1
            print(f"{page.name} does not show what is printed by: {command}\n{result.stdout}")
    if count == 0:
        faults += 1
        print(f"{page.name} shows no command")


for name in PAGES:
    with tempfile.TemporaryDirectory() as folder:
        tools = pathlib.Path(folder) / ".tools"
        tools.mkdir()
        (tools / "trevallo").symlink_to(os.path.abspath(PROGRAM))
        (pathlib.Path(folder) / "sample.beast").symlink_to(os.path.abspath(SAMPLE))
        os.environ["PATH"] = f"{tools}:{os.environ['PATH'].split(f'{os.sep}.tools:')[-1]}"
        check(pathlib.Path(name), folder)
sys.exit(1 if faults else 0)
