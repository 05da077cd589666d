# SPDX-License-Identifier: MIT
"""links.py: every relative link of the repository's Markdown files leads to a file, and to a heading if it names one."""
import pathlib
import re
import subprocess
import sys
import urllib.parse

LINK = re.compile(r"!?\[[^\]]*\]\(([^)\s]+)\)")
CODE = re.compile(r"^```.*?^```|`[^`\n]*`", re.M | re.S)


def text_of(page):
    return CODE.sub("", page.read_text(encoding="utf-8"))


def anchors(page):
    """The anchors of a page's headings, as forges make them."""
    headings = re.findall(r"^#+ +(.*)$", re.sub(r"^```.*?^```", "", page.read_text(encoding="utf-8"), flags=re.M | re.S), re.M)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


def fault(page, link):
    target, _, anchor = urllib.parse.unquote(link).partition("#")
    file = (page.parent / target).resolve() if target else page.resolve()
    if not file.exists():
        return "leads to no file"
    if anchor and anchor not in anchors(file):
        return "leads to no heading"
    return None


def main():
    names = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard", "*.md"],
                           capture_output=True, text=True, check=True).stdout.split()
    links = [(page, link) for page in map(pathlib.Path, names) for link in LINK.findall(text_of(page))
             if not re.match(r"[a-z]+:", link)]
    faults = [f"{page}: {link} {what}" for page, link in links if (what := fault(page, link))]
    if faults:
        sys.exit("\n".join(faults))
    print(f"{len(links)} links in {len(names)} Markdown files lead somewhere")


main()
