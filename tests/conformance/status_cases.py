# SPDX-License-Identifier: MIT
"""Extended squitters about the aircraft and its equipment: aircraft status, target state, operational status.

Source: RTCA DO-260, DO-260A and DO-260B, 2.2.3.2.7.
"""
from advisory_cases import ADVISORIES, THREATS
from case import Cases
from frame_bits import identity_code, message, squitter


def aircraft_status(cases):
    for state in range(8):
        for squawk in ("0000", "7500", "7777", "1234"):
            payload = message(28, (6, 8, 1), (9, 11, state), (12, 24, identity_code(squawk)))
            cases.add("6,1/1", squitter(payload), {"bds": "6,1", "emergency_state": state, "squawk": squawk})
    for fields, expect in ADVISORIES + THREATS:
        cases.add("6,1/2", squitter(message(28, (6, 8, 2), *fields)), expect)
    for version in (0, 1):
        cases.add("6,1/2 of a version without it", squitter(message(28, (6, 8, 2), (9, 9, 1))), {"ara": None},
                  given={"version": version})
    for subtype in (0, 3, 4, 5, 6, 7):
        cases.add("6,1 reserved", squitter(message(28, (6, 8, subtype), (9, 56, 1 << 47))), {
            "subtype": subtype, "emergency_state": None, "squawk": None, "ara": None})
    for subtype in range(8):
        squawk = "2345" if subtype == 7 else None
        cases.add("test message", squitter(message(23, (6, 8, subtype), (9, 21, identity_code("2345")))), {
            "subtype": subtype, "squawk": squawk})


def each(cases, kind, type_code, subtype, fields, values_of, common=()):
    """A case for each value of fields (name, first, last); `values_of(name, value)` says what must be read."""
    width = 8 if type_code == 31 else 7
    for name, first, last in fields:
        for value in range(1 << (last - first + 1)):
            payload = message(type_code, (6, width, subtype), *common).put(first, last, value)
            cases.add(kind, squitter(payload), values_of(name, value))


def target_states(cases):
    values = {
        "selected_altitude": lambda code: 32 * (code - 1) if code else None,
        "baro_pressure_setting": lambda code: round(800 + 0.8 * (code - 1), 1) if code else None,
    }
    each(cases, "6,2/1", 29, 1, [
        ("sil_supplement", 8, 8), ("selected_altitude", 10, 20), ("baro_pressure_setting", 21, 29), ("nac_p", 40, 43),
        ("nic_baro", 44, 44), ("sil", 45, 46)],
        lambda name, value: {name: values.get(name, int)(value)})
    for source, text in ((0, "MCP/FCU"), (1, "FMS")):
        for altitude in (0, 1):
            payload = message(29, (6, 7, 1), (9, 9, source), (10, 20, altitude))
            cases.add("6,2/1 source", squitter(payload), {"selected_altitude_source": text if altitude else None})
    for status in (0, 1):
        for code in range(512):
            payload = message(29, (6, 7, 1), (30, 30, status), (31, 39, code))
            cases.add("6,2/1 heading", squitter(payload), {"selected_heading": code * 0.703125 if status else None})
        names = {48: "autopilot", 49: "vnav_mode", 50: "altitude_hold_mode", 52: "approach_mode", 54: "lnav_mode"}
        for position in range(48, 55):
            payload = message(29, (6, 7, 1), (47, 47, status), (position, position, 1))
            expect = {name: one == position if status else None for one, name in names.items()}
            cases.add("6,2/1 modes", squitter(payload), expect | {"tcas_operational": position == 53})


def target_states_of_version_1(cases):
    for source in range(4):
        for code in (0, 10, 110, 1010, 1011, 1023):
            known = source != 0 and code <= 1010
            payload = message(29, (8, 9, source), (16, 25, code))
            cases.add("6,2/0 altitude", squitter(payload), {
                "vertical_data_source": source, "target_altitude": 100 * code - 1000 if known else None})
        for code in (0, 1, 180, 359, 360, 511):
            known = source != 0 and code <= 359
            payload = message(29, (26, 27, source), (28, 36, code), (37, 37, code % 2))
            cases.add("6,2/0 direction", squitter(payload), {
                "horizontal_data_source": source, "target_direction": code if known else None,
                "target_direction_is_track": code % 2 == 1 if known else None})
    each(cases, "6,2/0", 29, 0, [
        ("target_altitude_type", 10, 10), ("target_altitude_capability", 12, 13), ("vertical_mode", 14, 15),
        ("horizontal_mode", 38, 39), ("nac_p", 40, 43), ("nic_baro", 44, 44), ("sil", 45, 46),
        ("capability_mode", 52, 53), ("emergency_state", 54, 56)],
        lambda name, value: {"subtype": 0, name: value})
    for subtype, version in ((0, 0), (0, 2), (1, 0), (1, 1)):
        cases.add("6,2 of a version without it", squitter(message(29, (6, 7, subtype))), {"nac_p": None, "sil": None},
                  given={"version": version})
    for subtype in (2, 3):
        cases.add("6,2 reserved", squitter(message(29, (6, 7, subtype))), {"subtype": subtype, "nac_p": None})


# Fields by version and subtype: name, first and last bit.
MODE = [("ra_active", 27, 27), ("ident_active", 28, 28)]
QUALITY = [("nic_supplement_a", 44, 44), ("nac_p", 45, 48), ("sil", 51, 52), ("hrd", 54, 54)]
AIRBORNE = [("arv", 15, 15), ("ts", 16, 16), ("tc", 17, 18), ("nic_baro", 53, 53)]
SURFACE = [("b2_low", 15, 15), ("length_width", 21, 24), ("track_is_heading", 53, 53)]
VERSION_2 = [("es_in", 12, 12), ("single_antenna", 30, 30), ("sda", 31, 32), ("sil_supplement", 55, 55)]
STATUS_FIELDS = {
    (1, 0): MODE + QUALITY + AIRBORNE + [("cdti", 12, 12), ("baq", 49, 50)],
    (1, 1): MODE + QUALITY + SURFACE + [("cdti", 12, 12), ("position_offset_applied", 11, 11)],
    (2, 0): MODE + QUALITY + AIRBORNE + VERSION_2 + [("uat_in", 19, 19), ("gva", 49, 50)],
    (2, 1): MODE + QUALITY + SURFACE + VERSION_2 + [
        ("uat_in", 16, 16), ("nac_v", 17, 19), ("nic_c", 20, 20), ("gps_offset", 33, 40)],
}
STATUS_NAMES = {name for fields in STATUS_FIELDS.values() for name, _, _ in fields} | {"tcas_operational"}


def operational_status(cases):
    for (version, subtype), fields in STATUS_FIELDS.items():
        absent = {name: None for name in STATUS_NAMES - {name for name, _, _ in fields}}
        for read_as in ((version,) if version == 1 else (2, 3)):
            expect = absent | {"version": read_as, "subtype": subtype, "bds": "6,5"}
            if subtype == 0:
                expect["tcas_operational"] = version == 1  # the bit is 0, and means the opposite in version 1
            each(cases, f"6,5/{subtype}", 31, subtype, fields, lambda name, value: expect | {name: value},
                 common=[(41, 43, read_as)])
    for version in (1, 2):
        payload = message(31, (11, 11, 1), (41, 43, version))
        cases.add("6,5 TCAS", squitter(payload), {"tcas_operational": version == 2})
        for first, gone in ((9, "arv"), (25, "ra_active")):
            for code in (1, 2, 3):  # formats of the two fields that are not assigned
                payload = message(31, (first, first + 1, code), (41, 43, version))
                cases.add("6,5 reserved format", squitter(payload), {gone: None, "nac_p": 0})
    for version in (0, 4, 5, 6, 7):
        payload = message(31, (9, 24, 0x2BCD), (25, 40, 0x1234), (41, 43, version), (44, 56, 0x1FFF))
        cases.add("6,5 of other versions", squitter(payload), {name: None for name in STATUS_NAMES} | {
            "version": version, "capability_class": 0x2BCD, "operational_mode": 0x1234})
    for subtype in range(2, 8):
        cases.add("6,5 reserved", squitter(message(31, (6, 8, subtype), (41, 43, 2))), {"version": None, "nac_p": None})
    for type_code in (24, 25, 26, 27, 30):
        cases.add("not read", squitter(message(type_code, (9, 56, 1))), {"typecode": type_code, "bds": None})


def status_cases():
    cases = Cases("o")
    for make in (aircraft_status, target_states, target_states_of_version_1, operational_status):
        make(cases)
    return cases
