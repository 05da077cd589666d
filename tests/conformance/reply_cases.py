# SPDX-License-Identifier: MIT
"""Replies of formats 0, 4, 5, 11, 16, 19, 20, 21 and 24.

Source: ICAO Annex 10 Vol. IV, 3.1.2.5.2.2, 3.1.2.6.5 to 3.1.2.6.8, 3.1.2.7.3, 3.1.2.8.2, 3.1.2.8.3, 4.3.8.4.2.
"""
from advisory_cases import ADVISORIES
from case import Cases
from frame_bits import (ADDRESS, Bits, altitude_code, altitude_of, finished, identity_code, reply, with_m)

ICAO = f"{ADDRESS:06X}"
ALTITUDE = (20, 32, with_m(altitude_code(33025)))


def altitudes(cases):
    """All 4,096 codes without M, and some with it."""
    for code in range(4096):
        kind = "altitude 25 ft" if code >> 4 & 1 else "altitude Gillham"
        cases.add(kind, reply(4, (20, 32, with_m(code))), {"df": 4, "icao": ICAO, "altitude": altitude_of(code)})
    for code in (0, 1, 0x010, 0x321, 0xFFF):
        cases.add("altitude metric", reply(4, (20, 32, with_m(code, metric=1))), {"altitude": None})
    for feet in (-1000, 0, 25, 38000, 50175):
        for downlink_format in (0, 16, 20):
            frame = reply(downlink_format, (20, 32, with_m(altitude_code(feet))))
            cases.add("altitude by format", frame, {"df": downlink_format, "icao": ICAO, "altitude": feet})


def squawks(cases):
    """All 4,096 Mode A codes; the spare bit changes nothing."""
    for code in range(4096):
        squawk = f"{code:04o}"
        frame = reply(5, (20, 32, identity_code(squawk, spare=code % 2)))
        cases.add("squawk", frame, {"df": 5, "icao": ICAO, "squawk": squawk})
    for squawk in ("0000", "1200", "7500", "7600", "7700", "7777"):
        cases.add("squawk by format", reply(21, (20, 32, identity_code(squawk))), {"df": 21, "squawk": squawk})


def surveillance(cases):
    for downlink_format in (4, 5, 20, 21):
        for name, first, last in (("flight_status", 6, 8), ("downlink_request", 9, 13), ("utility_message", 14, 19)):
            for value in range(1 << (last - first + 1)):
                cases.add(name, reply(downlink_format, (first, last, value)),
                          {"df": downlink_format, "icao": ICAO, name: value})


def air_to_air(cases):
    for downlink_format in (0, 16):
        for value in range(8):
            cases.add("sensitivity level", reply(downlink_format, (9, 11, value), ALTITUDE),
                      {"sensitivity_level": value, "reply_information": 0, "altitude": 33025})
        for value in range(16):
            cases.add("reply information", reply(downlink_format, (14, 17, value)), {"reply_information": value})
        for value, text in ((0, "airborne"), (1, "on-ground")):
            cases.add("vertical status", reply(downlink_format, (6, 6, value)), {"vertical_status": text})
    for value in (0, 1):
        cases.add("cross-link", reply(0, (7, 7, value)), {"cross_link_capability": value})
        cases.add("cross-link", reply(16, (7, 7, value)), {"cross_link_capability": None})
    threat = {"threat_icao": None, "threat_altitude": None, "threat_range": None, "threat_bearing": None}
    for fields, expect in ADVISORIES:
        payload = Bits(56).put(1, 8, 0x30).put_all(fields)
        expect = {**expect, **threat, "threat_type_indicator": 0, "mv": f"{payload.value:014X}"}
        cases.add("DF16 advisory", reply(16, ALTITUDE, (33, 88, payload.value)), expect)
    cases.add("DF16 without advisory", reply(16, (33, 88, 0x31 << 48)), {"ara": None, "mv": "31000000000000"})


def all_calls(cases):
    def all_call(capability, overlay):
        return reply(11, (6, 8, capability), (9, 32, ADDRESS), overlay=overlay)

    for capability in range(8):
        cases.add("capability", all_call(capability, 0), {"df": 11, "icao": ICAO, "capability": capability, "ii": 0})
    for code in range(81):
        intact = code < 80
        cases.add("interrogator", all_call(5, code), {
            "crc_ok": intact, "ii": code if code < 16 else None, "si": code - 16 if 16 <= code < 80 else None})
    for code in (0x80, 0x1000, 0xFFFFFF):
        cases.add("interrogator", all_call(5, code), {"crc_ok": False, "ii": None, "si": None, "remainder": code})


def other_formats(cases):
    for application in range(8):
        cases.add("DF19", reply(19, (6, 8, application)), {"df": 19, "icao": None})
    for acknowledges in (0, 1):
        for segment in range(16):
            bits = Bits(112).put(1, 2, 3).put(4, 4, acknowledges).put(5, 8, segment)
            cases.add("DF24", finished(bits, ADDRESS), {"df": 24, "ke": acknowledges, "nd": segment})
    for downlink_format in (1, 2, 3, 6, 7, 8, 9, 10, 12, 13, 14, 15, 22, 23):
        cases.add("reserved format", reply(downlink_format), {"df": downlink_format, "icao": None, "altitude": None})


def reply_cases():
    cases = Cases("r")
    for make in (altitudes, squawks, surveillance, air_to_air, all_calls, other_formats):
        make(cases)
    return cases
