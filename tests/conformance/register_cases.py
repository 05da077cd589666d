# SPDX-License-Identifier: MIT
"""Comm-B registers in replies of format 20, as the reader is told which one it is.

Source: ICAO Doc 9871, tables A-2-16 to A-2-96.
"""
from advisory_cases import ADVISORIES, THREATS
from case import Cases
from frame_bits import register, reply, text_code, twos_complement


def add(cases, number, fields, expect, **more):
    cases.add(number, reply(20, (33, 88, register(*fields).value)), expect, given={"bds": number}, **more)


def codes_of(bits):
    """The ends, the middle and some others of a field."""
    return sorted({0, 1, 2, (1 << bits - 1) - 1, 1 << bits - 1, (1 << bits) - 2, (1 << bits) - 1, 0x155 % (1 << bits)})


def unsigned(step, offset=0):
    return lambda code, bits: round(offset + code * step, 6)


def signed(step):
    return lambda code, bits: (code - (code >> bits - 1 << bits)) * step


def direction(code, bits):
    return code * 360 / (1 << bits)


def plain(code, bits):
    return code


# Register: (name, status bit, last bit, value of the code).
GUARDED = {
    "4,0": [("selected_altitude_mcp", 1, 13, unsigned(16)), ("selected_altitude_fms", 14, 26, unsigned(16)),
            ("baro_pressure_setting", 27, 39, unsigned(0.1, 800))],
    "4,4": [("static_pressure", 35, 46, plain), ("turbulence", 47, 49, plain), ("humidity", 50, 56, unsigned(1.5625))],
    "4,5": [("turbulence", 1, 3, plain), ("wind_shear", 4, 6, plain), ("microburst", 7, 9, plain),
            ("icing", 10, 12, plain), ("wake_vortex", 13, 15, plain), ("static_air_temperature", 16, 26, signed(0.25)),
            ("static_pressure", 27, 38, plain), ("radio_height", 39, 51, unsigned(16))],
    "5,0": [("roll", 1, 11, signed(45 / 256)), ("true_track", 12, 23, direction), ("groundspeed", 24, 34, unsigned(2)),
            ("track_rate", 35, 45, signed(8 / 256)), ("true_airspeed", 46, 56, unsigned(2))],
    "5,3": [("magnetic_heading", 1, 12, direction), ("indicated_airspeed", 13, 23, plain),
            ("mach", 24, 33, unsigned(0.008)), ("true_airspeed", 34, 46, unsigned(0.5)),
            ("vertical_rate", 47, 56, signed(64))],
    "6,0": [("magnetic_heading", 1, 12, direction), ("indicated_airspeed", 13, 23, plain),
            ("mach", 24, 34, unsigned(0.004)), ("baro_vertical_rate", 35, 45, signed(32)),
            ("inertial_vertical_rate", 46, 56, signed(32))],
}


def guarded(cases):
    """A value is there only if the bit in front of it is 1; the others are not."""
    for number, fields in GUARDED.items():
        for name, status, last, value in fields:
            others = {other: None for other, *_ in fields if other != name}
            for code in codes_of(last - status):
                add(cases, number, [(status, status, 1), (status + 1, last, code)],
                    {**others, name: value(code, last - status)})
                add(cases, number, [(status + 1, last, code)], {**others, name: None})


def intentions(cases):
    names = ("vnav_mode", "altitude_hold_mode", "approach_mode")
    for status in (0, 1):
        for code in range(8):
            expect = {name: bool(code >> (2 - i) & 1) if status else None for i, name in enumerate(names)}
            add(cases, "4,0", [(48, 48, status), (49, 51, code)], expect)
        for code, source in enumerate(("unknown", "aircraft_altitude", "mcp_fcu", "fms")):
            add(cases, "4,0", [(54, 54, status), (55, 56, code)], {"target_altitude_source": source if status else None})


def weather(cases):
    for merit in range(16):  # 0: the report is invalid
        temperature = twos_complement(-195, 11)
        add(cases, "4,4", [(1, 4, merit), (24, 34, temperature)], {
            "figure_of_merit": merit, "static_air_temperature": -48.75 if merit else None, "wind_speed": None})
    for code in codes_of(11):
        add(cases, "4,4", [(1, 4, 1), (24, 34, code)], {"static_air_temperature": signed(0.25)(code, 11)})
    for status in (0, 1):
        for speed, direction_code in ((0, 0), (1, 1), (22, 490), (250, 256), (511, 511)):
            add(cases, "4,4", [(5, 5, status), (6, 14, speed), (15, 23, direction_code)], {
                "wind_speed": speed if status else None,
                "wind_direction": direction_code * 0.703125 if status else None})


FLAGS_1_0 = {"config": 9, "overlay_command_capability": 15, "acas_operational": 16, "transponder_level5": 24,
             "mode_s_specific_services": 25, "aircraft_identification_capability": 33, "squitter_capability": 34,
             "surveillance_identifier_code": 35, "common_usage_gicb_capability": 36, "acas_hybrid_surveillance": 37,
             "acas_resolution_advisory": 38}
NUMBERS_1_0 = {"mode_s_subnetwork_version": (17, 23), "uplink_elm_throughput": (26, 28),
               "downlink_elm_throughput": (29, 32), "dte_status": (41, 56)}
SERVED = ["0,5", "0,6", "0,7", "0,8", "0,9", "0,A", "2,0", "2,1", "4,0", "4,1", "4,2", "4,3", "4,4", "4,5", "4,8",
          "5,0", "5,1", "5,2", "5,3", "5,4", "5,5", "5,6", "5,F", "6,0", None, None, "E,1", "E,2", "F,1"]


def capabilities(cases):
    number_zero = [(1, 8, 0x10)]
    for name, position in FLAGS_1_0.items():
        expect = {other: other == name for other in FLAGS_1_0}
        add(cases, "1,0", [*number_zero, (position, position, 1)], expect)
    for name, (first, last) in NUMBERS_1_0.items():
        for code in codes_of(last - first + 1):
            add(cases, "1,0", [*number_zero, (first, last, code)], {name: code})
    for version in range(4):  # MB 40 is the high bit
        add(cases, "1,0", [*number_zero, (39, 39, version & 1), (40, 40, version >> 1)], {"acas_rtca_version": version})
    for position, served in enumerate(SERVED, 1):
        add(cases, "1,7", [(position, position, 1)], {"supported_bds": [served] if served else []})
    add(cases, "1,7", [(1, 29, (1 << 29) - 1)], {"supported_bds": [one for one in SERVED if one]})


def texts(cases):
    for callsign in ("TRV12   ", "A1B2C3D4", "        ", "  MID   ", "BAD#TEXT"):
        add(cases, "2,0", [(1, 8, 0x20), (9, 56, text_code(callsign))], {"callsign": callsign.strip()})
    for registered in (0, 1):
        for operated in (0, 1):
            fields = [(1, 1, registered), (2, 43, text_code("D-AB1  ".replace("-", "X"))), (44, 44, operated),
                      (45, 56, text_code("QV"))]
            add(cases, "2,1", fields, {"registration": "DXAB1" if registered else None,
                                       "airline": "QV" if operated else None})


def advisories(cases):
    for fields, expect in ADVISORIES + THREATS:
        add(cases, "3,0", [(1, 8, 0x30), *fields], expect)


def register_cases():
    cases = Cases("b")
    for make in (guarded, intentions, weather, capabilities, texts, advisories):
        make(cases)
    return cases
