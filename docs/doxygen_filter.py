# SPDX-License-Identifier: MIT
"""doxygen_filter.py FILE: prints a header or a page as Doxygen needs it, line for line.

- In the public headers, a comment in front of a paragraph speaks of all its declarations: the value of an item, whether
  it is valid, its times. Doxygen asks for markers around them.
- Some words are classes too. At the start of a sentence they are no links: a percent sign in front of a word says so.
- "Vol." ends no sentence, so it ends no summary either.
- Percent signs that are meant are doubled where they would be taken for such.
"""
import itertools
import re
import sys

DECLARATION = re.compile(r"    [A-Za-z~]")
SINGLE = re.compile(r"    (enum|struct|class|union)\b")
WORD = re.compile(r"(?<!\[)\b(Aircraft|Log|Element|Document)(?= [a-z])")


def is_comment(line):
    return line.startswith("    /// ")


def grouped(paragraph):
    """The lines of a paragraph; with markers where one comment speaks of several declarations."""
    starts = [at for at, line in enumerate(paragraph) if is_comment(line) and (at == 0 or not is_comment(paragraph[at - 1]))]
    lines = list(paragraph)
    for start, end in zip(starts, starts[1:] + [len(paragraph)]):
        declarations = [line for line in paragraph[start:end] if DECLARATION.match(line)]
        if len(declarations) > 1 and not SINGLE.match(declarations[0]):
            lines[start] = "    /** @{ */ " + lines[start].lstrip()
            lines[end - 1] += " /** @} */" if "//" not in lines[end - 1] else "\n    /** @} */"
    return lines


def as_prose(text):
    return WORD.sub(r"%\1", re.sub(r"%(?=\w)", "%%", text)).replace("Vol. ", "Vol.\\ ")


def comment_as_prose(line):
    code, mark, comment = line.partition("///")
    return code + mark + as_prose(comment)


def header(lines):
    for blank, paragraph in itertools.groupby(map(comment_as_prose, lines), key=lambda line: not line.strip()):
        yield from paragraph if blank else grouped(list(paragraph))


def page(lines):
    fenced = False
    for line in lines:
        fenced ^= line.startswith("```")
        yield line if fenced or line.startswith("#") else as_prose(line)


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        lines = file.read().split("\n")
    print("\n".join((header if sys.argv[1].endswith(".h") else page)(lines)))


main()
