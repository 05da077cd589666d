# SPDX-License-Identifier: MIT
"""quotes.py code|output|record REPOSITORY PROGRAMS: the pages quote programs and what they print as they are.

A block of a Markdown page is a quotation when one of these comments stands in front of it:

    <!-- code: FILE -->             the file without its licence line
    <!-- code: FILE, START -->      its part that starts with the line START..., up to the closing brace at the margin
    <!-- code: FILE, #include -->   what it includes and the namespace that it uses
    <!-- output: PROGRAM -->        what the program prints for the tutorial's recording
    <!-- output: PROGRAM, FIRST, LAST -->   the first and the last lines of it

"code" and "output" check the quotations of either kind; "record" puts into the pages what belongs there. The programs of
a page run in one folder, in the order of the page: what one leaves there, the next finds.
"""
import pathlib
import re
import subprocess
import sys
import tempfile

QUOTATION = re.compile(r"(<!-- (code|output): ([^,\n]+?)(?:, ([^\n]+?))? -->\n```\w*\n)(.*?)(^```$)", re.M | re.S)
RECORDING = "examples/tutorial/traffic.avr"


def code(repository, file, start):
    text = (repository / file).read_text(encoding="utf-8").split("\n", 1)[1]
    if start is None:
        return text
    end = "using namespace .*?;" if start == "#include" else "};?"
    part = re.search(rf"^{re.escape(start)}.*?^{end}$\n", text, re.M | re.S)
    return part.group() if part else f"({file} has no part that starts with {start})\n"


def output(repository, program, folder, extent):
    with open(repository / RECORDING, "rb") as recording:
        run = subprocess.run([program], stdin=recording, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, cwd=folder,
                             text=True, check=True, timeout=300)
    if extent is None:
        return run.stdout
    lines = run.stdout.splitlines(keepends=True)
    first, last = map(int, extent.split(", "))
    return "".join(lines[:first] + ["...\n"] + lines[-last:])


def corrected(page, kinds, repository, programs):
    with tempfile.TemporaryDirectory() as folder:
        def put_right(match):
            begin, kind, name, part, quoted, end = match.groups()
            if kind not in kinds:
                return match.group()
            right = code(repository, name, part) if kind == "code" else output(repository, programs / name, folder, part)
            return begin + right + end
        return QUOTATION.subn(put_right, page)


def main():
    action, repository, programs = sys.argv[1], *map(pathlib.Path, sys.argv[2:])
    kinds = ("code", "output") if action == "record" else (action,)
    stale, quotations = [], 0
    for file in [repository / "README.md", *sorted((repository / "docs").glob("*.md"))]:
        page = file.read_text(encoding="utf-8")
        right, count = corrected(page, kinds, repository, programs.resolve())
        quotations += count
        if right != page:
            stale.append(file.name)
            if action == "record":
                file.write_text(right, encoding="utf-8")
    if action != "record" and stale:
        sys.exit(f"Not as it is: the {action} in {', '.join(stale)} (./dev docs --record puts it right)")
    if not quotations:
        sys.exit("No page quotes anything: the marks are not found")


main()
