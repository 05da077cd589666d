# SPDX-License-Identifier: MIT
"""Resolution advisories: bits 9 to 56 of register 3,0, of an MV field and of the aircraft status message.

Source: ICAO Annex 10 Vol. IV, 4.3.8.4.2.2.1.
"""
from frame_bits import altitude_code, gillham, with_m

SAME_SENSE = ("corrective", "downward_sense", "increased_rate", "sense_reversal", "altitude_crossing", "positive")
MIXED_SENSE = ("up_correction", "positive_climb", "down_correction", "positive_descend", "altitude_crossing",
               "sense_reversal")
COMPLEMENTS = ("no_below", "no_above", "no_left", "no_right")


def advisory(bits, first, multiple):
    """Six bits from ARA 2 on, with the bit before them and MTE."""
    meaning = SAME_SENSE if first else MIXED_SENSE if multiple else ()
    expect = {name: None for name in SAME_SENSE + MIXED_SENSE}
    expect.update((name, bool(bits >> (5 - i) & 1)) for i, name in enumerate(meaning))
    expect |= {"ara": first << 13 | bits << 7, "multiple_threat": bool(multiple), "issued_ra": bool(meaning)}
    return [(9, 9, first), (10, 15, bits), (28, 28, multiple)], expect


def advisories():
    for first in (0, 1):
        for multiple in (0, 1):
            for bits in range(64):
                yield advisory(bits, first, multiple)
    for complement in range(16):
        expect = {name: bool(complement >> (3 - i) & 1) for i, name in enumerate(COMPLEMENTS)}
        yield [(23, 26, complement)], {"rac": complement, **expect}
    for terminated in (0, 1):
        yield [(27, 27, terminated)], {"ra_terminated": bool(terminated)}


def threats():
    yield [(29, 30, 0)], {"threat_type_indicator": 0, "threat_icao": None, "threat_range": None}
    yield [(29, 30, 3)], {"threat_type_indicator": 3, "threat_icao": None, "threat_range": None}
    yield [(29, 30, 1), (31, 54, 0xABCDEF)], {"threat_icao": "ABCDEF", "threat_range": None}
    for code in range(128):  # 0 no estimate, 127 more than 12.55 NM
        known = round((code - 1) / 10, 1) if 0 < code < 127 else None
        yield [(29, 30, 2), (44, 50, code)], {"threat_range": known, "threat_icao": None}
    for code in range(64):  # 0 no estimate, sectors of 6 degrees from 1 to 60
        yield [(29, 30, 2), (51, 56, code)], {"threat_bearing": 6 * code - 3 if 0 < code <= 60 else None}
    for code, feet in ((with_m(altitude_code(35000)), 35000), (with_m(gillham(61)), 6100), (0, None)):
        yield [(29, 30, 2), (31, 43, code)], {"threat_altitude": feet}


ADVISORIES = list(advisories())
THREATS = list(threats())
