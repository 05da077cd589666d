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


def followed_by(marker, line):
    return f"{line} {marker}" if "//" not in line else f"{line}\n    {marker}"


def group(lines, begin, end):
    """Puts markers around the declarations of a paragraph that one comment speaks of."""
    starts = [at for at in range(begin, end) if is_comment(lines[at]) and not is_comment(lines[at - 1])]
    for start, stop in zip(starts, starts[1:] + [end]):
        declarations = [line for line in lines[start:stop] if DECLARATION.match(line)]
        if len(declarations) > 1 and not SINGLE.match(declarations[0]):
            lines[start - 1] = followed_by("/** @{ */", lines[start - 1])
            lines[stop - 1] = followed_by("/** @} */", lines[stop - 1])


def as_prose(text):
    return WORD.sub(r"%\1", re.sub(r"%(?=\w)", "%%", text)).replace("Vol. ", "Vol.\\ ")


def comment_as_prose(line):
    code, mark, comment = line.partition("///")
    return code + mark + as_prose(comment)


def header(lines):
    lines = list(map(comment_as_prose, lines))
    numbers = enumerate(list(lines))
    for blank, paragraph in itertools.groupby(numbers, key=lambda numbered: not numbered[1].strip()):
        paragraph = [number for number, _ in paragraph]
        if not blank:
            group(lines, paragraph[0], paragraph[-1] + 1)
    return lines


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
