# SPDX-License-Identifier: MIT
"""What frames say by the standards, as dictionaries."""
import gzip
import json

import pytest

from trevallo import airspace
from trevallo.airspace import read

from conftest import RECORDINGS

VELOCITY = "8D485020994409940838175B284F"
EVEN = "8D40621D58C382D690C8AC2863A7"
SPEEDS = "A0000510EB59CB18BFF401A98E0D"  # fits 5,0 and 6,0
TRUTH = RECORDINGS / "standard"


def test_a_frame_is_a_dictionary_of_what_it_holds() -> None:
    values = read(VELOCITY).to_dict()
    assert values["df"] == 17 and values["icao"] == "485020" and values["crc_ok"] is True
    assert values["groundspeed"] == pytest.approx(159.2, abs=0.1)
    assert values["vertical_rate"] == -832 and values["vr_source"] == "GNSS"
    assert "heading" not in values and None not in values.values()


def test_bytes_and_digits_of_either_case_are_the_same_frame() -> None:
    values = read(VELOCITY).to_dict()
    assert read(bytes.fromhex(VELOCITY)).to_dict() == values == read(VELOCITY.lower()).to_dict()
    assert read(memoryview(bytes.fromhex(VELOCITY))).to_dict() == values


def test_a_register_that_is_told_is_read_as_such() -> None:
    assert read(SPEEDS).to_dict()["bds_candidates"] == ["5,0", "6,0"]
    values = read(SPEEDS, register="6,0").to_dict()
    assert values["bds"] == "6,0" and values["indicated_airspeed"] == 229 and "bds_candidates" not in values
    assert values["altitude"] == 7000
    other = read(SPEEDS, register="5,0").to_dict()
    assert other["bds"] == "5,0" and "indicated_airspeed" not in other and "true_track" in other


def test_a_told_register_takes_the_place_of_the_one_that_fits() -> None:
    callsign = "A0001690200414B5D32820A11DB7"
    assert read(callsign).to_dict()["callsign"] == "AAR542"
    values = read(callsign, register="4,0").to_dict()
    assert values["bds"] == "4,0" and "callsign" not in values


def test_a_register_changes_nothing_in_frames_without_one() -> None:
    assert read(VELOCITY, register="5,0").to_dict() == read(VELOCITY).to_dict()


def test_a_reference_gives_positions_a_place() -> None:
    values = read(EVEN, reference=(52.0, 4.0)).to_dict()
    assert values["latitude"] == pytest.approx(52.25720, abs=1e-5)
    assert values["longitude"] == pytest.approx(3.91937, abs=1e-5)
    assert "latitude" not in read(EVEN).to_dict()
    assert "latitude" not in read(VELOCITY, reference=(52.0, 4.0)).to_dict()


@pytest.mark.parametrize("frame", ["", "8D", "5D4CA2D46B60", b"\x8d", b""])
def test_bytes_that_are_no_frame_have_no_values(frame: str | bytes) -> None:
    assert read(frame).to_dict() == {}


@pytest.mark.parametrize("frame", ["hello", "8D4", "*8D485020994409940838175B284F;"])
def test_text_that_is_no_digits_is_refused(frame: str) -> None:
    with pytest.raises(ValueError):
        read(frame)


@pytest.mark.parametrize("register", ["9,9", "50", "", "0,5"])
def test_a_register_that_is_not_read_is_refused(register: str) -> None:
    with pytest.raises(ValueError, match="there is no register"):
        read(SPEEDS, register=register)


def test_a_message_shows_its_values() -> None:
    message = read(VELOCITY)
    assert isinstance(message, airspace.Message)
    assert repr(message).startswith("<trevallo.airspace.Message {'df': 17,")


def test_the_values_of_recorded_frames_are_those_of_the_standards() -> None:
    path = TRUTH / "receiver_session.fields.jsonl.gz"
    if not path.exists():
        pytest.skip(f"there is no truth in {TRUTH}")
    with gzip.open(path, "rt", encoding="utf-8") as file:
        for line in file:
            expected = json.loads(line)
            values = read(expected["hex"]).to_dict()
            for name in expected.keys() - {"i", "hex"}:
                value = expected[name]
                assert values[name] == (pytest.approx(value, abs=1e-6) if isinstance(value, float) else value), line
            assert values.keys() - expected.keys() <= {"remainder"}, line
