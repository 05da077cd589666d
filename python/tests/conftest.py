# SPDX-License-Identifier: MIT
import os
import pathlib
from typing import Iterator

import pytest

import trevallo

ROOT = pathlib.Path(__file__).resolve().parents[2]
RECORDINGS = pathlib.Path(os.environ.get("TREVALLO_RECORDINGS", ROOT.parent / "shared/data"))


@pytest.fixture(autouse=True)
def lines() -> Iterator[list[tuple[trevallo.Log.Level, str]]]:
    """What the library logs in a test."""
    taken: list[tuple[trevallo.Log.Level, str]] = []
    trevallo.Log.setLogHandler(lambda level, line: taken.append((level, line)))
    trevallo.Log.setShowLevel(trevallo.Log.Info)
    yield taken
    trevallo.Log.setLogHandler(None)
    trevallo.Log.setShowLevel(trevallo.Log.Info)


@pytest.fixture(scope="session")
def sample() -> bytes:
    return (ROOT / "data/sample.beast").read_bytes()


def recording(name: str) -> bytes:
    path = pathlib.Path(RECORDINGS, name)
    if not path.exists():
        pytest.skip(f"there is no real recording {name} here")
    return path.read_bytes()
