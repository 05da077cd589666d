# SPDX-License-Identifier: MIT
import pathlib
import re
import subprocess
import sys

import pytest

from conftest import ROOT

EXAMPLE = ROOT / "python/examples/draw_flight.py"
PNG = b"\x89PNG\r\n\x1a\n"


def draw(*arguments: object) -> "subprocess.CompletedProcess[str]":
    return subprocess.run([sys.executable, str(EXAMPLE), *map(str, arguments)], capture_output=True, text=True)


@pytest.mark.parametrize("callsign", ["", "SLM4767"])
def test_the_example_draws_a_flight(tmp_path: pathlib.Path, callsign: str) -> None:
    run = draw(ROOT / "data/sample.beast", tmp_path / "flight.png", callsign)
    assert (run.returncode, run.stderr) == (0, "")
    picture = (tmp_path / "flight.png").read_bytes()
    assert picture.startswith(PNG) and len(picture) > 20_000


def test_the_example_says_when_there_is_no_such_flight(tmp_path: pathlib.Path) -> None:
    run = draw(ROOT / "data/sample.beast", tmp_path / "flight.png", "NOBODY")
    assert run.returncode != 0 and run.stderr == "no aircraft NOBODY in this recording\n"


def pieces() -> list[tuple[str, str]]:
    """The programs of the guide, each with the output that it shows."""
    guide = (ROOT / "docs/python.md").read_text(encoding="utf-8")
    return re.findall(r"^```python\n(.*?)^```\n\n```text\n(.*?)^```$", guide, re.M | re.S)


def test_the_guide_has_programs() -> None:
    assert len(pieces()) >= 4


@pytest.mark.parametrize("program, output", pieces(), ids=range(len(pieces())))
def test_the_guide_shows_what_its_programs_print(program: str, output: str) -> None:
    run = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True, cwd=ROOT)
    assert run.returncode == 0, run.stderr
    assert run.stdout == output
