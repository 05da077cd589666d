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
