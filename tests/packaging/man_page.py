# SPDX-License-Identifier: MIT
"""man_page.py PROGRAM PAGE [--record]: the sections on commands in the man page say what the program's help says: exits 1
with the differences if not, or writes them into the page."""
import difflib
import pathlib
import re
import subprocess
import sys

PROGRAM, PAGE = sys.argv[1], pathlib.Path(sys.argv[2])
BEGIN, END = '.\\" The commands, as the program describes them.\n', ".SH EXIT STATUS\n"


def roff(text):
    """Text as the formatter shows it unchanged, also at the start of a line."""
    return re.sub(r"^(?=[.'])", r"\\&", text.replace("\\", "\\e").replace("-", "\\-"), flags=re.M)


def blocks_of_help(command):
    """The blocks between blank lines, by title; the first is "" and what has no title follows as "Examples"."""
    text = subprocess.run([PROGRAM, *command, "--help"], capture_output=True, check=True, text=True, timeout=300).stdout
    blocks = {"": text.partition("\nUsage: ")[0], "Usage": re.search(r"^Usage: (.*)$", text, re.M).group(1)}
    for title in ("Positionals", "Options", "Subcommands", "Examples"):
        found = re.search(rf"^{title}:\n((?:(?: .*)?\S.*\n)+)", text, re.M)
        blocks[title] = found.group(1) if found else ""
    return blocks


def entries(block):
    """(what, text), which starts in column 30, of each entry of a block: an option with its values, a positional, or a command."""
    return [(what.strip(), text) for what, text in re.findall(r"^  (\S.{26} |\S.*\n {29}) *(\S.*)$", block, re.M)]


def described(what, text):
    name, _, values = what.partition(" ")
    values, _, default = values.partition("=")
    if default:
        text += f" ({default} when not given)"
    return f'.TP\n.BI "{roff(name)}" " {roff(values)}"\n{roff(text)}\n' if values else f".TP\n.B {roff(name)}\n{roff(text)}\n"


def section(heading, command):
    blocks = blocks_of_help(command)
    page = f"{heading}\n.B {roff(blocks['Usage'])}\n.PP\n{roff(blocks[''])}.\n"
    for what, text in entries(blocks["Positionals"]):
        page += described(what.split(" ")[0], text)
    for what, text in entries(blocks["Options"]):
        if not what.startswith("-h,"):
            page += described(what, text)
    if blocks["Examples"]:
        examples = [line for line in blocks["Examples"].splitlines(True) if line.startswith("  ")]
        page += ".PP\nExamples:\n.PP\n.RS\n.EX\n" + roff("".join(line[2:] for line in examples)) + ".EE\n.RE\n"
        remarks = "".join(line for line in blocks["Examples"].splitlines(True) if not line.startswith("  "))
        page += f".PP\n{roff(remarks)}" if remarks else ""
    for name, _ in entries(blocks["Subcommands"]):
        page += section(f".SS trevallo {' '.join([*command, name])}", [*command, name])
    return page


commands = [name for name, _ in entries(blocks_of_help([])["Subcommands"])]
said = "".join(section(f".SH {name.upper()}", [name]) for name in commands)
page = PAGE.read_text(encoding="utf-8")
before, after = page.split(BEGIN)[0] + BEGIN, END + page.split(END)[1]

if "--record" in sys.argv:
    PAGE.write_text(before + said + after, encoding="utf-8")
elif not commands or page != before + said + after:
    written = page[len(before):len(page) - len(after)]
    sys.stdout.writelines(difflib.unified_diff(written.splitlines(True), said.splitlines(True), "man page", "help", n=1))
    sys.exit("The man page does not say what the help says: " + " ".join([*map(str, sys.argv), "--record"]))
