# SPDX-License-Identifier: MIT
"""Frames that tests share."""
import trevallo

IDENTITY = bytes.fromhex("8D4840D6202CC371C32CE0576098")
POSITION_EVEN = bytes.fromhex("8D40621D58C382D690C8AC2863A7")
POSITION_ODD = bytes.fromhex("8D40621D58C386435CC412692AD6")
VELOCITY = bytes.fromhex("8D485020994409940838175B284F")

ADDRESS = 0x4840D6
T = 1_700_000_000_000  # ms


def decoded(frame: bytes, time: int = T) -> trevallo.ModeSMessage:
    message = trevallo.ModeSDecoder().decode(trevallo.ModeSMessage.DOWNLINK, frame, time)
    assert message is not None
    return message


def with_parity(frame: bytes) -> bytes:
    """Polynomial division by the generator of ICAO Annex 10 Vol. IV, 3.1.2.3.3.1.2."""
    rest = int.from_bytes(frame[:11], "big") << 24
    for bit in range(111, 23, -1):
        if rest >> bit & 1:
            rest ^= 0x1FFF409 << (bit - 24)
    return frame[:11] + rest.to_bytes(3, "big")


def beast(ticks: int, frame: bytes) -> bytes:
    kind = {2: b"1", 7: b"2", 14: b"3"}[len(frame)]
    return b"\x1a" + kind + (ticks.to_bytes(6, "big") + b"\x20" + frame).replace(b"\x1a", b"\x1a\x1a")
