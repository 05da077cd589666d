# SPDX-License-Identifier: MIT
"""links.py [SITE]: every relative link of the repository's Markdown files, or of the pages of a site, leads somewhere.

A link of a Markdown file leads to a file, and to a heading if it names one.
"""
import pathlib
import re
import subprocess
import sys
import urllib.parse

LINK = re.compile(r"!?\[[^\]]*\]\(([^)\s]+)\)")
REFERENCE = re.compile(r'(?:href|src|data)="([^"#]+)')
FENCED = re.compile(r"^```.*?^```", re.M | re.S)
CODE = re.compile(r"^```.*?^```|`[^`\n]*`", re.M | re.S)


def without(pattern, page):
    return pattern.sub("", page.read_text(encoding="utf-8"))


def anchors(page):
    """The anchors of a page's headings, as forges make them."""
    headings = re.findall(r"^#+ +(.*)$", without(FENCED, page), re.M)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


def fault(page, link):
    target, _, anchor = urllib.parse.unquote(link).partition("#")
    file = (page.parent / target).resolve() if target else page.resolve()
    if not file.exists():
        return "leads to no file"
    if anchor and file.suffix == ".md" and anchor not in anchors(file):
        return "leads to no heading"
    return None


def markdown_files():
    files = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard", "*.md"],
                           capture_output=True, text=True, check=True).stdout.split()
    return [file for file in map(pathlib.Path, files) if file.exists()]


def links_of(page):
    found = LINK.findall(without(CODE, page)) if page.suffix == ".md" else REFERENCE.findall(page.read_text(encoding="utf-8"))
    return [link for link in found if not re.match(r"[a-z]+:", link)]


def main():
    pages = sorted(pathlib.Path(sys.argv[1]).glob("*.html")) if len(sys.argv) > 1 else markdown_files()
    links = [(page, link) for page in pages for link in links_of(page)]
    faults = [f"{page}: {link} {what}" for page, link in links if (what := fault(page, link))]
    if faults or not links:
        sys.exit("\n".join(faults) or "there are no links")
    print(f"{len(links)} links in {len(pages)} pages lead somewhere")


main()
