# SPDX-License-Identifier: MIT
"""commands.py REPOSITORY BUILD: the commands that the pages give to readers after ./dev demo work, from the first to the
last of a block, and print something.

They are the blocks behind the comment <!-- run -->. What they have from build/release is taken from BUILD, and what they
make goes there.
"""
import pathlib
import re
import subprocess
import sys
import tempfile

BLOCK = re.compile(r"^<!-- run -->\n```sh\n(.*?)^```$", re.M | re.S)

repository, build = (pathlib.Path(word).resolve() for word in sys.argv[1:3])
blocks = {page: BLOCK.findall(page.read_text(encoding="utf-8"))
          for page in [repository / "README.md", *sorted((repository / "docs").glob("*.md"))]}
if not any(blocks.values()):
    sys.exit("No page gives commands: the marks are not found")
with tempfile.TemporaryDirectory() as folder:
    made = pathlib.Path(folder)
    (made / "build").mkdir()
    (made / "build" / "release").symlink_to(build)
    for kept in ("include", "examples"):
        (made / kept).symlink_to(repository / kept)
    for page, commands in ((page, commands) for page in blocks for commands in blocks[page]):
        result = subprocess.run(["sh", "-e", "-c", commands], cwd=made, capture_output=True, text=True, timeout=300)
        if result.returncode != 0 or not result.stdout:
            sys.exit(f"{page.name}: {commands}failed with status {result.returncode}:\n{result.stderr}")
