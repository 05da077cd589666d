# SPDX-License-Identifier: MIT
"""Positions: encoded by the rules of compact position reporting, and to be found again.

Source: RTCA DO-260B, A.1.7.2 to A.1.7.8.
"""
import math

from case import Cases
from frame_bits import altitude_code, message, squitter

SCALE = 1 << 17
AIRBORNE, SURFACE = 11, 7  # type codes
COUNTS = {AIRBORNE: SCALE, SURFACE: 4 * SCALE}  # of the steps in a zone; the surface drops the highest two bits


def longitude_zones(latitude):
    distance = abs(latitude)
    if distance == 0:
        return 59
    if distance >= 87:
        return 2 if distance == 87 else 1
    ratio = (1 - math.cos(math.pi / 30)) / math.cos(math.radians(distance)) ** 2
    return math.floor(2 * math.pi / math.acos(1 - ratio))


def in_zones(degrees, zone, steps):
    """The number of a place in its zone, and the place that this number stands for."""
    number = math.floor(steps * (degrees % zone) / zone + 0.5)
    return number, zone * (number / steps + math.floor(degrees / zone))


class Encoded:
    """A position as a message of one format holds it."""

    def __init__(self, type_code, is_odd, latitude, longitude):
        steps = COUNTS[type_code]
        y, self.latitude = in_zones(latitude, 360 / (60 - is_odd), steps)
        self.zones = longitude_zones(self.latitude)
        x, self.longitude = in_zones(longitude, 360 / max(self.zones - is_odd, 1), steps)
        fields = [(22, 22, is_odd), (23, 39, y % SCALE), (40, 56, x % SCALE)]
        if type_code == AIRBORNE:
            fields.append((9, 20, altitude_code(12000)))
        self.frame = squitter(message(type_code, *fields))


def wrapped(longitude):
    return (longitude + 180) % 360 - 180


PLACES = [(latitude + 0.137, longitude + 0.271) for latitude in (-84, -61, -38, -15, 0, 12, 35, 58, 81)
          for longitude in (-179, -120, -61, 0, 45, 89, 134, 178)]
PLACES += [(0.0, 0.0), (-0.0004, -0.0004), (45.0, 179.9999), (-45.0, -179.9999), (86.9, 10.0), (87.5, -10.0), (-89.5, 100.0)]
TOLERANCE = {"latitude": 1e-6, "longitude": 1e-6}


def expected(place):
    return {"latitude": round(place.latitude, 9), "longitude": round(wrapped(place.longitude), 9)}


def pair_cases(cases, type_code, name, reference):
    for latitude, longitude in PLACES:
        for newest in (0, 1):
            older, newer = (Encoded(type_code, is_odd, latitude, longitude) for is_odd in (1 - newest, newest))
            same = older.zones == newer.zones
            cases.add(f"CPR global {name}", [older.frame, newer.frame],
                      expected(newer) if same else {"latitude": None, "longitude": None},
                      t=[0, 0.5], ref=reference(latitude, longitude), tol=TOLERANCE)


def local_cases(cases, type_code, name):
    reach = 2.0 if type_code == AIRBORNE else 0.4  # degrees of latitude; fewer miles in longitude
    for latitude, longitude in PLACES:
        for is_odd in (0, 1):
            place = Encoded(type_code, is_odd, latitude, longitude)
            reference = [max(-90.0, min(90.0, latitude + reach)), wrapped(longitude - reach)]
            cases.add(f"CPR local {name}", [place.frame], expected(place), ref=reference, tol=TOLERANCE)


def border_cases(cases):
    """Where the numbers of zones change, between two latitudes; and formats that make no pair."""
    for latitude in (10.47, 29.91, 59.95, 81.19, 86.53, 87.0):
        for shift in range(-4, 5):
            pair = [Encoded(AIRBORNE, is_odd, latitude + shift * 0.0009, 20.0) for is_odd in (0, 1)]
            same = pair[0].zones == pair[1].zones
            cases.add("CPR zone border", [one.frame for one in pair],
                      expected(pair[1]) if same else {"latitude": None, "longitude": None}, t=[0, 0.5], tol=TOLERANCE)
    even, other = Encoded(AIRBORNE, 0, 50.0, 8.0), Encoded(AIRBORNE, 0, 50.1, 8.1)
    nothing = {"latitude": None, "longitude": None}
    cases.add("CPR no pair", [even.frame, other.frame], nothing, t=[0, 0.5])
    cases.add("CPR no pair", [even.frame, Encoded(SURFACE, 1, 50.0, 8.0).frame], nothing, t=[0, 0.5], ref=[50, 8])


def position_cases():
    cases = Cases("p")
    pair_cases(cases, AIRBORNE, "air", lambda latitude, longitude: None)
    pair_cases(cases, SURFACE, "surface", lambda latitude, longitude: [latitude, wrapped(longitude + 0.2)])
    local_cases(cases, AIRBORNE, "air")
    local_cases(cases, SURFACE, "surface")
    border_cases(cases)
    return cases
