# SPDX-License-Identifier: MIT
"""Messages and positions of a recording as arrays."""
import math
from typing import Any, Literal

import numpy
import pytest

import trevallo
from trevallo import Log, ModeSMessage
from trevallo.airspace import AddressKind, Aircraft, Frame, Item, Sky, Source, Stream, to_arrays

from frames import ADDRESS, IDENTITY, POSITION_EVEN, POSITION_ODD, beast, with_parity

SECOND = 1 << 30  # of a receiver's time of day


@pytest.fixture(autouse=True)
def quiet() -> None:
    Log.setShowLevel(Log.Error)


def test_messages_are_the_mode_s_frames_as_decode_stream_has_them(sample: bytes) -> None:
    messages, rows = to_arrays(sample)["messages"], trevallo.decode_stream(sample)
    same = {"time": "timeStamp", "address": "icaoAddress", "format": "downlinkFormat", "typeCode": "typeCode",
            "register": "register", "confidence": "confidence", "signal": "signalAmplitude", "isDecoded": "decoded",
            "isTracked": "tracked"}
    for column, other in same.items():
        numpy.testing.assert_array_equal(messages[column], rows[other], err_msg=column)
    assert set(same) | {"addressKind", "repairs"} == set(messages.dtype.names or ())
    assert (messages["repairs"] > 0).sum() > 10
    numpy.testing.assert_array_equal(messages["addressKind"] == AddressKind.Icao, messages["address"] != 0)


def test_a_message_says_what_its_address_is_and_how_far_it_can_be_trusted() -> None:
    vehicle = with_parity(bytes([18 << 3 | 1]) + IDENTITY[1:])  # control field 1
    mode_ac = b"\x12\x34"
    data = b"".join(beast(at, frame) for at, frame in enumerate((IDENTITY, mode_ac, vehicle)))
    messages = to_arrays(data, trevallo.ModeSEncapsulation.Beast)["messages"]
    assert messages["address"].tolist() == [ADDRESS, ADDRESS]
    assert messages["addressKind"].tolist() == [AddressKind.Icao, AddressKind.NonIcao]
    assert messages["confidence"].tolist() == [ModeSMessage.HIGH, ModeSMessage.HIGH]
    assert messages["format"].tolist() == [17, 18]


def near(aircraft: Aircraft, item: Item[Any]) -> Any:
    """What was reported within the last 10 s."""
    return math.nan if item.value is None or aircraft.age(item.updated) > 10_000 else item.value


def test_positions_are_those_that_a_sky_shows_with_what_else_is_known_then(sample: bytes) -> None:
    stream, sky, expected = Stream(), Sky(), []
    for frame in stream.feed(sample) + stream.finish():
        reply = sky.take(frame)
        aircraft = sky.find(reply, frame.time)
        if not aircraft or not reply.isPositionShown or not aircraft.position.value:
            continue
        place = aircraft.position.value
        rate = near(aircraft, aircraft.verticalRateBaro)
        expected.append((frame.time, aircraft.address, aircraft.addressKind, place.latitude, place.longitude,
                         near(aircraft, aircraft.altitudeBaro), near(aircraft, aircraft.altitudeGnss),
                         near(aircraft, aircraft.groundSpeed), near(aircraft, aircraft.track),
                         near(aircraft, aircraft.verticalRateGnss) if math.isnan(rate) else rate,
                         near(aircraft, aircraft.groundStatus), near(aircraft, aircraft.nic),
                         near(aircraft, aircraft.radius), aircraft.position.source))
    positions = to_arrays(sample)["positions"]
    assert len(positions) == len(expected) > 2000
    for name, values in zip(positions.dtype.names or (), zip(*expected), strict=True):
        column = positions[name]
        right = numpy.array(values)
        if name == "time":
            column = column.astype("i8")
        elif column.dtype.kind == "i":
            right = numpy.nan_to_num(right.astype(float), nan=-1)
        numpy.testing.assert_array_equal(column, right.astype(column.dtype), err_msg=name)


def test_what_was_reported_long_before_a_position_is_left_out() -> None:
    moving = with_parity(POSITION_EVEN[:4] + bytes.fromhex("99440994083817") + bytes(3))
    frames = [(0, moving), (1, POSITION_EVEN), (2, POSITION_ODD), (15, POSITION_EVEN), (16, POSITION_ODD)]
    data = b"".join(beast(second * SECOND, frame) for second, frame in frames)
    positions = to_arrays(data, trevallo.ModeSEncapsulation.Beast)["positions"]
    seconds = (positions["time"] - numpy.datetime64("1970-01-02")).astype(int) // 1000
    known = dict(zip(seconds.tolist(), numpy.isfinite(positions["groundSpeed"]).tolist()))
    assert known[2] and not known[16]
    assert set(positions["source"]) == {Source.AdsB} and numpy.isfinite(positions["altitudeBaro"]).all()


@pytest.mark.parametrize("values, rate", [("standard", -832), ("library", -64)])
def test_values_are_by_the_standards_or_those_of_the_library(values: Literal["standard", "library"], rate: int) -> None:
    moving = with_parity(POSITION_EVEN[:4] + bytes.fromhex("99440994083817") + bytes(3))
    data = b"".join(beast(at, frame) for at, frame in enumerate((moving, POSITION_EVEN, POSITION_ODD)))
    arrays = to_arrays(data, trevallo.ModeSEncapsulation.Beast, values=values)
    assert arrays["positions"]["verticalRate"].tolist() == [rate]
    assert len(arrays["messages"]) == 3


def test_an_empty_recording_has_empty_arrays() -> None:
    arrays = to_arrays(b"", trevallo.ModeSEncapsulation.Avr)
    assert [len(array) for array in arrays.values()] == [0, 0]


def test_pandas_takes_the_arrays_as_they_are(sample: bytes) -> None:
    pandas = pytest.importorskip("pandas")
    for array in to_arrays(sample).values():
        frame = pandas.DataFrame(array)
        assert len(frame) == len(array) and tuple(frame.columns) == array.dtype.names
        assert frame["time"].iloc[0].year == 1970


def test_each_column_is_documented() -> None:
    text = to_arrays.__doc__ or ""
    for array in to_arrays(b"", trevallo.ModeSEncapsulation.Avr).values():
        for name in array.dtype.names or ():
            assert f"\n{name} " in text
