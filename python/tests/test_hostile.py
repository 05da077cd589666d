# SPDX-License-Identifier: MIT
"""Whatever is received or called, Python lives on: bad input is refused or gives nothing."""
import random
from typing import Any, Callable

import pytest

import trevallo
from trevallo import ADSBTracker, DFMessage, Log, ModeSDecoder, ModeSEncapsulation, ModeSMessage

FORMATS = list(ModeSEncapsulation.Format)[1:]
CLASSES = [member for member in vars(trevallo).values() if isinstance(member, type)]


@pytest.fixture(autouse=True)
def quiet() -> None:
    Log.setShowLevel(Log.Error)


@pytest.mark.parametrize("format", FORMATS)
def test_random_bytes_are_decoded_to_what_they_are(format: ModeSEncapsulation.Format) -> None:
    chance = random.Random(1)
    for size in (0, 1, 2, 7, 14, 15, 1000, 70_000):
        data = chance.randbytes(size)
        frames = trevallo.decode_stream(data, format)
        assert len(frames) <= size
        assert (frames["decoded"] | (frames["icaoAddress"] == 0)).all()
        assert len(trevallo.decode_stream(data, format, values="library")) == len(frames)
        assert len(trevallo.airspace.to_arrays(data, format)["messages"]) == (frames["downlinkFormat"] >= 0).sum()


@pytest.mark.parametrize("format", FORMATS)
def test_a_damaged_recording_is_decoded_to_its_end(sample: bytes, format: ModeSEncapsulation.Format) -> None:
    chance = random.Random(2)
    data = bytearray(sample)
    for _ in range(len(data) // 50):
        data[chance.randrange(len(data))] = chance.randrange(256)
    frames = trevallo.decode_stream(data, format)
    if format is ModeSEncapsulation.Beast:
        assert frames["tracked"].sum() > 1000


def test_random_frames_go_all_the_way_and_can_be_looked_at() -> None:
    chance = random.Random(3)
    decoder, tracker = ModeSDecoder(), ADSBTracker()
    seen = set()
    for _ in range(20_000):
        message = decoder.decode(ModeSMessage.DOWNLINK, chance.randbytes(chance.choice((7, 14))))
        if message is not None:
            seen.add(type(message))
            tracker.procModeSMsg(message)
            look_at(message)
            for field in message.fields:
                look_at(field)
    assert len(seen) > 5


def test_random_payloads_can_be_looked_at_in_every_class() -> None:
    chance = random.Random(4)
    kinds = [kind for kind in CLASSES if issubclass(kind, trevallo.ADSBMessage) and is_made(kind)]
    assert len(kinds) > 15
    for kind in kinds:
        message = kind()
        message.decodeImpl()
        look_at(message)
        for _ in range(50):
            message.decode(chance.randbytes(chance.choice((0, 6, 7, 8))))
            message.decodeImpl()
            look_at(message)


def test_a_velocity_type_is_always_one_that_has_a_name() -> None:
    message = trevallo.ADSBAirborneVelocityMessageV0()
    for subtype in range(8):
        message.decode(bytes([19 << 3 | subtype, *bytes(6)]))
        assert isinstance(message.velocityType, message.VelocityType)


def is_made(kind: type) -> bool:
    try:
        kind()
    except TypeError:
        return False
    return True


def look_at(thing: object) -> int:
    """Reads every property and returns how many members there are."""
    repr(thing)
    return len([getattr(thing, name) for name in dir(thing) if not name.startswith("_")])


CALLABLES = [(kind, name) for kind in CLASSES for name, member in vars(kind).items()
             if callable(member) and not isinstance(member, type) and not name.startswith("_")
             and trevallo.Log is not kind]
JUNK: list[Any] = [None, -1, 0, 2**64, 1.5, float("nan"), "", "\udcff", b"", b"\xff" * 14, bytearray(b"@;\n"), [], object,
                   trevallo.MOPS_V2, DFMessage.DF24, trevallo.ADSBTarget(1), trevallo.DF17Message(), trevallo.Aircraft(0)]


REFUSALS = (TypeError, ValueError, OSError, NotImplementedError)


@pytest.mark.parametrize("kind, name", CALLABLES, ids=[f"{kind.__name__}.{name}" for kind, name in CALLABLES])
def test_calls_with_anything_return_or_are_refused(kind: type, name: str, tmp_path: Any, monkeypatch: Any) -> None:
    monkeypatch.chdir(tmp_path)  # some junk is a good file name
    chance = random.Random(f"{kind.__name__}.{name}")
    made = kind() if is_made(kind) else trevallo.ADSBTarget(1) if kind is trevallo.ADSBTarget else None
    function: Callable[..., object] = getattr(kind if made is None else made, name)
    for _ in range(200):
        arguments = [chance.choice(JUNK) for _ in range(chance.randrange(4))]
        try:
            function(*arguments)
        except REFUSALS:
            pass
    assert made is None or look_at(made) > 0


def test_a_made_object_that_was_not_initialised_is_refused() -> None:
    class Careless(trevallo.ADSBTracker):
        def __init__(self) -> None:
            pass

    with pytest.raises(TypeError, match="__init__"):
        Careless()
