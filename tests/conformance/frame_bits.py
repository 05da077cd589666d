# SPDX-License-Identifier: MIT
"""Mode S frames, bit by bit: fields, parity, and the codes that altitudes, Mode A codes and texts have in them.

Source: ICAO Annex 10 Vol. IV, 3.1.2.3.3 (parity), 3.1.2.6.5.4 (altitude), 3.1.2.6.7.1 (identity), 3.1.2.9.1.2 (texts).
"""

GENERATOR = 0x1FFF409  # of the parity code, 25 bits
ADDRESS = 0x4B1A2C  # of all made aircraft


class Bits:
    """A number of bits, numbered from 1; `put` writes first to last, both included."""

    def __init__(self, size):
        self.size, self.value = size, 0

    def put(self, first, last, value):
        width = last - first + 1
        if not 0 <= value < 1 << width:
            raise ValueError(f"{value} does not fit bits {first} to {last}")
        shift = self.size - last
        self.value = self.value & ~(((1 << width) - 1) << shift) | value << shift
        return self

    def put_all(self, fields):
        """`fields` are (first, last, value)."""
        for first, last, value in fields:
            self.put(first, last, value)
        return self


def remainder(bits):
    """Of the division of all bits but the last 24 by the generator."""
    value = bits.value >> 24 << 24
    for position in range(bits.size - 1, 23, -1):
        if value >> position & 1:
            value ^= GENERATOR << (position - 24)
    return value


def finished(bits, overlay):
    """The hexadecimal digits of a frame whose parity field is overlaid by an address or an interrogator's code."""
    bits.put(bits.size - 23, bits.size, remainder(bits) ^ overlay)
    return f"{bits.value:0{bits.size // 4}X}"


def reply(downlink_format, *fields, overlay=ADDRESS):
    """A frame of formats below 24 with these fields."""
    bits = Bits(112 if downlink_format >= 16 else 56).put(1, 5, downlink_format)
    return finished(bits.put_all(fields), overlay)


def squitter(payload, downlink_format=17, first_field=5, address=ADDRESS):
    """An extended squitter with 56 bits of ME. `first_field` is CA of format 17, CF of format 18."""
    return reply(downlink_format, (6, 8, first_field), (9, 32, address), (33, 88, payload.value), overlay=0)


def message(type_code, *fields):
    """ME with a type code."""
    return Bits(56).put(1, 5, type_code).put_all(fields)


def register(*fields):
    return Bits(56).put_all(fields)


def gray(number):
    return number ^ number >> 1


def gillham(hundreds):
    """The 12 bits C1 A1 C2 A2 C4 A4 B1 Q B2 D2 B4 D4 of an altitude from -10 to 1,267 hundred feet; Q is 0."""
    five_hundreds, part = divmod(hundreds + 12, 5)
    ones = part + 1 if five_hundreds % 2 == 0 else 5 - part
    c = gray(7 if ones == 5 else ones)
    rest = gray(five_hundreds)  # D2 D4 A1 A2 A4 B1 B2 B4
    d2, d4, a1, a2, a4, b1, b2, b4 = (rest >> shift & 1 for shift in range(7, -1, -1))
    code = 0
    for bit in (c >> 2 & 1, a1, c >> 1 & 1, a2, c & 1, a4, b1, 0, b2, d2, b4, d4):
        code = code << 1 | bit
    return code


GILLHAM = {gillham(hundreds): 100 * hundreds for hundreds in range(-10, 1268)}


def altitude_code(feet):
    """The 12 bits of an altitude in steps of 25 ft up to 50,175 ft; Q is 1."""
    steps = (feet + 1000) // 25
    return steps >> 4 << 5 | 1 << 4 | steps & 0xF


def altitude_of(code):
    """What 12 bits say; None if they say nothing."""
    if code >> 4 & 1:
        return 25 * (code >> 5 << 4 | code & 0xF) - 1000
    return GILLHAM.get(code)


def with_m(code, metric=0):
    """The 13 bits of surveillance replies: with M in front of B1."""
    return code >> 6 << 7 | metric << 6 | code & 0x3F


def identity_code(squawk, spare=0):
    """The 13 bits C1 A1 C2 A2 C4 A4 X B1 D1 B2 D2 B4 D4 of four octal digits."""
    a, b, c, d = (int(digit) for digit in squawk)
    bit = lambda digit, weight: digit // weight & 1
    code = 0
    for one in (bit(c, 1), bit(a, 1), bit(c, 2), bit(a, 2), bit(c, 4), bit(a, 4), spare,
                bit(b, 1), bit(d, 1), bit(b, 2), bit(d, 2), bit(b, 4), bit(d, 4)):
        code = code << 1 | one
    return code


def text_code(text):
    """Six bits for each character; a `#` is the code 63, which is none."""
    code = 0
    for character in text:
        number = 63 if character == "#" else ord(character) & 0x3F
        code = code << 6 | number
    return code


def twos_complement(value, width):
    return value & (1 << width) - 1
