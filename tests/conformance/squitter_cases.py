# SPDX-License-Identifier: MIT
"""Extended squitters: identification, positions, velocity, and what ground stations send.

Source: RTCA DO-260, DO-260A and DO-260B, 2.2.3.2.3 to 2.2.3.2.6; 2.2.17.3 (ground stations).
"""
import math

from case import Cases
from frame_bits import ADDRESS, altitude_code, altitude_of, message, squitter, text_code

NOTHING_HORIZONTAL = {"velocity_ew": None, "velocity_ns": None, "groundspeed": None, "track": None, "heading": None,
                      "airspeed": None, "airspeed_type": None}


def identification(cases):
    for type_code, letter in ((1, "D"), (2, "C"), (3, "B"), (4, "A")):
        for number in range(8):
            frame = squitter(message(type_code, (6, 8, number), (9, 56, text_code("TRV12   "))))
            cases.add("0,8 category", frame, {"typecode": type_code, "bds": "0,8", "category": number,
                                              "emitter_category": f"{letter}{number}", "callsign": "TRV12"})
    letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ 0123456789"
    for code in range(64):
        character = next((one for one in letters if ord(one) & 0x3F == code), "#")
        callsign = f"A{character}Z"
        payload = message(4, (9, 56, text_code("A A     "))).put(15, 20, code).put(21, 26, ord("Z") & 0x3F)
        cases.add("0,8 character", squitter(payload), {"callsign": callsign})


def airborne_positions(cases):
    for type_code in (*range(9, 19), 20, 21, 22):
        kind = "gnss" if type_code >= 20 else "baro"
        for code in (0, altitude_code(12350), 0x021, 0x7A4, 0xFFF):
            feet = altitude_of(code)
            cases.add("0,5 altitude", squitter(message(type_code, (9, 20, code))), {
                "bds": "0,5", "altitude": feet, "altitude_type": kind if feet is not None else None})
    for status in range(4):
        for type_code in (0, 11):
            payload = message(type_code, (6, 7, status), (9, 20, altitude_code(1000)))
            cases.add("surveillance status", squitter(payload), {
                "typecode": type_code, "surveillance_status": status, "altitude": 1000,
                "cpr_lat": None if type_code == 0 else 0})
    for name, position in (("nic_b", 8), ("time_sync", 21), ("cpr_format", 22)):
        for value in (0, 1):
            payload = message(11, (position, position, value), (23, 39, 74158), (40, 56, 50194))
            cases.add("0,5 flags", squitter(payload), {name: value, "cpr_lat": 74158, "cpr_lon": 50194})
    cases.add("0,5 longest", squitter(message(18, (23, 56, (1 << 34) - 1))), {"cpr_lat": 131071, "cpr_lon": 131071})


# First code, its lower bound and the step of codes, in kt; of versions 0 and 1, and of version 2.
MOVEMENTS = {
    0: [(1, 0, 0.125), (3, 0.25, 0.125), (9, 1, 0.25), (13, 2, 0.5), (39, 15, 1), (94, 70, 2), (109, 100, 5)],
    2: [(1, 0, 0), (2, 0, 0.125), (3, 0.125, 0.875 / 6), (9, 1, 0.25), (13, 2, 0.5), (39, 15, 1), (94, 70, 2),
        (109, 100, 5)],
}


def movement_range(code, version):
    if not 1 <= code <= 124:
        return None, None  # no information, or reserved
    if code == 124:
        return 175, None
    first, lower, step = [row for row in MOVEMENTS[version] if row[0] <= code][-1]
    lower += (code - first) * step
    return lower, lower + step


def surface_positions(cases):
    for version in MOVEMENTS:
        for code in range(128):
            lower, upper = movement_range(code, version)
            cases.add("0,6 movement", squitter(message(7, (6, 12, code))), {
                "bds": "0,6", "movement": code, "groundspeed": lower, "groundspeed_upper": upper},
                given={"version": version})
    for code in range(128):
        for status in (0, 1):
            cases.add("0,6 track", squitter(message(5, (13, 13, status), (14, 20, code))), {
                "track_status": status, "track": code * 2.8125 if status else None})
    for type_code in (5, 6, 7, 8):
        frame = squitter(message(type_code, (21, 21, 1), (22, 22, 1), (23, 39, 1), (40, 56, 2)))
        cases.add("0,6 position", frame, {"typecode": type_code, "bds": "0,6", "altitude": None, "time_sync": 1,
                                          "cpr_format": 1, "cpr_lat": 1, "cpr_lon": 2})


def signed(code, sign, step):
    """Code 0 is no information, 1 is 0."""
    return None if code == 0 else (-1 if sign else 1) * (code - 1) * step


def over_ground(cases):
    for subtype, step in ((1, 1), (2, 4)):
        for east in (0, 1, 2, 300, 1022, 1023):
            for north in (0, 1, 7, 451, 1023):
                for signs in range(4):
                    values = signed(east, signs & 1, step), signed(north, signs >> 1, step)
                    known = None not in values
                    speed = math.hypot(*values) if known else None
                    track = math.degrees(math.atan2(*values)) % 360 if speed else None
                    payload = message(19, (6, 8, subtype), (14, 14, signs & 1), (15, 24, east), (25, 25, signs >> 1),
                                      (26, 35, north))
                    cases.add(f"0,9/{subtype}", squitter(payload), {
                        **NOTHING_HORIZONTAL, "subtype": subtype, "velocity_ew": values[0], "velocity_ns": values[1],
                        "groundspeed": speed, "track": track})


def through_air(cases):
    for subtype, step in ((3, 1), (4, 4)):
        for airspeed in (0, 1, 2, 480, 1022, 1023):
            for is_true in (0, 1):
                for status, heading in ((0, 0), (0, 700), (1, 0), (1, 1), (1, 512), (1, 1023)):
                    payload = message(19, (6, 8, subtype), (14, 14, status), (15, 24, heading), (25, 25, is_true),
                                      (26, 35, airspeed))
                    cases.add(f"0,9/{subtype}", squitter(payload), {
                        **NOTHING_HORIZONTAL, "heading": heading * 360 / 1024 if status else None,
                        "airspeed": signed(airspeed, 0, step), "airspeed_type": "TAS" if is_true else "IAS"})


def vertical(cases):
    for subtype in range(8):
        assigned = 1 <= subtype <= 4
        for code in (0, 1, 2, 38, 511):
            for sign in (0, 1):
                for is_barometric in (0, 1):
                    rate = signed(code, sign, 64) if assigned else None
                    payload = message(19, (6, 8, subtype), (36, 36, is_barometric), (37, 37, sign), (38, 46, code))
                    cases.add("0,9 vertical rate", squitter(payload), {
                        "subtype": subtype, "vertical_rate": rate,
                        "vr_source": None if rate is None else "BARO" if is_barometric else "GNSS"})
    for code in range(128):  # 127: more than 3,137.5 ft, which is no value
        for sign in (0, 1):
            payload = message(19, (6, 8, 1), (49, 49, sign), (50, 56, code))
            cases.add("0,9 height difference", squitter(payload), {
                "geo_minus_baro": None if code == 127 else signed(code, sign, 25)})
    for category in range(8):
        for flag in (0, 1):
            payload = message(19, (6, 8, 1), (9, 9, flag), (10, 10, flag), (11, 13, category))
            cases.add("0,9 flags", squitter(payload), {"nac_v": category, "intent_change": flag, "ifr_capability": flag})


def ground_stations(cases):
    """Format 18 by its control field, which decides how ME is read, and whether there is a type code."""
    payload = message(4, (6, 8, 3), (9, 56, text_code("GROUND  ")))
    for control in range(8):
        typed = control not in (3, 4, 7)
        cases.add("DF18", squitter(payload, 18, control), {
            "df": 18, "cf": control, "crc_ok": True, "icao": f"{ADDRESS:06X}", "capability": None,
            "typecode": 4 if typed else None, "callsign": "GROUND" if typed else None})
    for control in (2, 5):
        for covers in (0, 1):  # bit 36: whether the height difference stands in ME 49 to 56
            velocity = message(19, (6, 8, 1), (10, 13, 9), (15, 24, 101), (26, 35, 1), (36, 36, covers),
                               (38, 46, 11), (48, 50, 0), (51, 52, 2), (53, 56, 5))
            difference = 25 * (velocity.value & 0x7F) - 25
            cases.add("TIS-B velocity", squitter(velocity, 18, control), {
                "nac_p": 9, "velocity_ew": 100, "velocity_ns": 0, "vertical_rate": 640, "vr_source": None,
                "nac_v": None if covers else 0, "sil": None if covers else 2,
                "geo_minus_baro": difference if covers else None})
    for code in range(64):  # steps of 32 kt around their middle; the last one has no upper bound
        coarse = message(0).put(8, 19, altitude_code(5000)).put(20, 20, 1).put(21, 25, 9).put(26, 31, code)
        lower = None if code == 0 else 0 if code == 1 else 32 * code - 48
        cases.add("TIS-B coarse", squitter(coarse, 18, 3), {
            "typecode": None, "altitude": 5000, "track": 101.25, "groundspeed": lower,
            "groundspeed_upper": 32 * code - 16 if 0 < code < 63 else None})


def squitter_cases():
    cases = Cases("s")
    for make in (identification, airborne_positions, surface_positions, over_ground, through_air, vertical,
                 ground_stations):
        make(cases)
    return cases
