# SPDX-License-Identifier: MIT
"""How far reports can be trusted: every row of the tables of integrity and accuracy, in metres and metres a second.

Source: RTCA DO-260, DO-260A and DO-260B, 2.2.3.2.3.1, 2.2.3.2.6.1.5, 2.2.3.2.7.2.6 to 2.2.3.2.7.2.11.
"""
from case import Cases
from frame_bits import message, squitter

MILE = 1852.0

# Type code: rows (supplements A, B, C that it needs or None, NUCp or NIC, containment radius).
EVERY = (None, None, None)
VERSION_0 = {
    5: [(EVERY, 9, 7.5)], 6: [(EVERY, 8, 25)], 7: [(EVERY, 7, 0.1 * MILE)], 8: [(EVERY, 6, None)],
    9: [(EVERY, 9, 7.5)], 10: [(EVERY, 8, 25)], 11: [(EVERY, 7, 0.1 * MILE)], 12: [(EVERY, 6, 0.2 * MILE)],
    13: [(EVERY, 5, 0.5 * MILE)], 14: [(EVERY, 4, 1 * MILE)], 15: [(EVERY, 3, 2 * MILE)], 16: [(EVERY, 2, 10 * MILE)],
    17: [(EVERY, 1, 20 * MILE)], 18: [(EVERY, 0, None)], 20: [(EVERY, 9, 7.5)], 21: [(EVERY, 8, 25)],
    22: [(EVERY, 0, None)],
}
SAME_SINCE_1 = {
    5: [(EVERY, 11, 7.5)], 6: [(EVERY, 10, 25)], 9: [(EVERY, 11, 7.5)], 10: [(EVERY, 10, 25)],
    12: [(EVERY, 7, 0.2 * MILE)], 14: [(EVERY, 5, 1 * MILE)], 15: [(EVERY, 4, 2 * MILE)], 17: [(EVERY, 1, 20 * MILE)],
    18: [(EVERY, 0, None)], 20: [(EVERY, 11, 7.5)], 21: [(EVERY, 10, 25)], 22: [(EVERY, 0, None)],
}
ONLY_A = [((1, None, None), 9, 75), ((0, None, None), 8, 0.1 * MILE)]
VERSION_1 = SAME_SINCE_1 | {
    7: ONLY_A, 8: [(EVERY, 0, None)], 11: ONLY_A,
    13: [((0, None, None), 6, 0.5 * MILE), ((1, None, None), 6, 0.6 * MILE)],
    16: [((1, None, None), 3, 4 * MILE), ((0, None, None), 2, 8 * MILE)],
}
VERSION_2 = SAME_SINCE_1 | {
    7: [((1, None, 0), 9, 75), ((0, None, 0), 8, 0.1 * MILE)],
    8: [((1, None, 1), 7, 0.2 * MILE), ((1, None, 0), 6, 0.3 * MILE), ((0, None, 1), 6, 0.6 * MILE),
        ((0, None, 0), 0, None)],
    11: [((1, 1, None), 9, 75), ((0, 0, None), 8, 0.1 * MILE)],
    13: [((0, 1, None), 6, 0.3 * MILE), ((0, 0, None), 6, 0.5 * MILE), ((1, 1, None), 6, 0.6 * MILE)],
    16: [((1, 1, None), 3, 4 * MILE), ((0, 0, None), 2, 8 * MILE)],
}


def fits(needed, supplements):
    return all(need is None or need == given for need, given in zip(needed, supplements))


def containment(cases):
    every = [(a, b, c) for a in (0, 1) for b in (0, 1) for c in (0, 1)]
    for version, table in ((0, VERSION_0), (1, VERSION_1), (2, VERSION_2)):
        for type_code, rows in table.items():
            for a, b, c in every:
                row = next((row for row in rows if fits(row[0], (a, b, c))), None)
                if row is None or (b and type_code < 9):
                    continue  # no row names it; surface positions have no supplement B
                payload = message(type_code) if type_code < 9 else message(type_code, (8, 8, b))
                _, category, radius = row
                cases.add("containment", squitter(payload), {
                    "nic": None if version == 0 else category, "rc": radius, **({"nuc_p": category} if version == 0 else {})},
                    given={"version": version, "nic_supplement_a": a, "nic_supplement_c": c}, tol={"rc": 0.001})


# By NACp: horizontal bound, and the vertical one of version 1.
POSITION = [(None, None)] + [(miles * MILE, None) for miles in (10, 4, 2, 1, 0.5, 0.3, 0.1, 0.05)] + [
    (30, 45), (10, 15), (3, 4)] + [(None, None)] * 4
VELOCITY = [None, 10, 3, 1, 0.3, None, None, None]  # by NACv, in m/s
GEOMETRIC = [None, 150, 45, None]  # by GVA
PROBABILITY = [None, 1e-3, 1e-5, 1e-7]  # by SIL and SDA

LENGTH_AND_WIDTH = [None, (15, 23), (25, 28.5), (25, 34), (35, 33), (35, 38), (45, 39.5), (45, 45), (55, 45), (55, 52),
                    (65, 59.5), (65, 67), (75, 72.5), (75, 80), (85, 80), (85, 90)]


def accuracy(cases):
    for version in (1, 2):
        for code, (horizontal, vertical) in enumerate(POSITION):
            cases.add("accuracy", squitter(message(31, (41, 43, version), (45, 48, code))), {
                "nac_p": code, "position_accuracy": horizontal, "height_accuracy": vertical if version == 1 else None},
                tol={"position_accuracy": 0.001})
        for code, probability in enumerate(PROBABILITY):
            cases.add("accuracy", squitter(message(31, (41, 43, version), (51, 52, code))), {
                "sil": code, "sil_probability": probability}, tol={"sil_probability": 1e-12})
    for code, bound in enumerate(VELOCITY):
        cases.add("accuracy", squitter(message(19, (6, 8, 1), (11, 13, code))), {
            "nac_v": code, "velocity_accuracy": bound}, given={"version": 2})
    for code, bound in enumerate(GEOMETRIC):
        cases.add("accuracy", squitter(message(31, (41, 43, 2), (49, 50, code))), {
            "gva": code, "geometric_accuracy": bound})
    for code, probability in enumerate(PROBABILITY):
        cases.add("accuracy", squitter(message(31, (41, 43, 2), (31, 32, code))), {
            "sda": code, "sda_probability": probability}, tol={"sda_probability": 1e-12})


def sizes(cases):
    for version in (1, 2):
        for code, size in enumerate(LENGTH_AND_WIDTH):
            if code == 0:  # no information since version 2
                size = (15, 11.5) if version == 1 else (None, None)
            payload = message(31, (6, 8, 1), (21, 24, code), (41, 43, version))
            cases.add("size", squitter(payload), {"length_width": code, "length": size[0], "width": size[1]})
    for code in range(256):
        is_right, lateral, aft = code >> 7, code >> 5 & 3, code & 31
        sideways = 2 * lateral if is_right else -2 * lateral if lateral else None
        payload = message(31, (6, 8, 1), (33, 40, code), (41, 43, 2))
        cases.add("antenna offset", squitter(payload), {
            "gps_offset": code, "antenna_right": sideways, "antenna_aft": 2 * (aft - 1) if aft > 1 else None})


def integrity_cases():
    cases = Cases("i")
    for make in (containment, accuracy, sizes):
        make(cases)
    return cases
