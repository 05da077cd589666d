# SPDX-License-Identifier: MIT
"""Vectors of frames, and what the reply class of their downlink format makes of them."""
from vector_text import escaped, number

GENERATOR = 0x1FFF409


def parity(data):
    """Remainder of a frame without its last 24 bits, by division bit by bit."""
    value = int.from_bytes(data[:-3], "big") << 24
    for shift in range(8 * len(data) - 25, -1, -1):
        if value >> (shift + 24) & 1:
            value ^= GENERATOR << shift
    return value


def hex2(value):
    return f"{value:02X}"


def altitude_of(data):
    code = format(number(data, 19, 13), "013b")
    steps = int(code[0:6] + code[7] + code[9:13], 2)
    return steps * (25 if code[8] == "1" else 100) - 1000


def identity_of(data):
    c1, a1, c2, a2, c4, a4, _, b1, d1, b2, d2, b4, d4 = (number(data, 19 + i, 1) for i in range(13))
    digit = lambda one, two, four: 4 * four + 2 * two + one
    return 512 * digit(a1, a2, a4) + 64 * digit(b1, b2, b4) + 8 * digit(c1, c2, c4) + digit(d1, d2, d4)


FLIGHT_STATUS = ["AIR", "GND", "AIR, ALERT", "GND, ALERT", "ALERT, SPI", "SPI", "UNKNOWN", "UNKNOWN"]

# designator: width and text of the value
FIELDS = {
    "AA": (24, lambda d, p: hex2(number(d, p, 24))),
    "AC": (13, lambda d, p: str(altitude_of(d))),
    "AF": (3, lambda d, p: str(number(d, p, 3))),
    "AP": (24, lambda d, p: hex2(number(d, p, 24))),
    "CA": (3, lambda d, p: str(number(d, p, 3))),
    "CF": (3, lambda d, p: str(number(d, p, 3))),
    "FS": (3, lambda d, p: FLIGHT_STATUS[number(d, p, 3)]),
    "ID": (13, lambda d, p: f"{identity_of(d):04o}"),
    "MB": (56, lambda d, p: d[4:11].hex().upper()),
    "ME": (56, lambda d, p: d[4:11].hex().upper()),
    "MV": (56, lambda d, p: d[4:11].hex().upper()),
    "PI": (24, lambda d, p: hex2(number(d, p, 24))),
    "VS": (1, lambda d, p: ["AIR", "GND"][number(d, p, 1)]),
}

# format: bytes, fields with their positions, fields that the description names
FORMATS = {
    0: (7, [("VS", 5), ("AC", 19), ("AP", 32)], ["VS", "AC"]),
    4: (7, [("FS", 5), ("AC", 19), ("AP", 32)], ["FS", "AC"]),
    5: (7, [("FS", 5), ("ID", 19), ("AP", 32)], ["FS", "ID"]),
    11: (7, [("CA", 5), ("AA", 8), ("PI", 32)], ["CA", "AA", "PI"]),
    16: (14, [("VS", 5), ("AC", 19), ("MV", 32), ("AP", 88)], ["VS", "AC"]),
    17: (14, [("CA", 5), ("AA", 8), ("ME", 32), ("PI", 88)], ["CA", "AA", "ME"]),
    18: (14, [("CF", 5), ("AA", 8), ("ME", 32), ("PI", 88)], ["CF", "AA", "ME"]),
    19: (14, [("AF", 5), ("AA", 8), ("ME", 32), ("PI", 88)], ["AF", "AA", "ME"]),
    20: (14, [("FS", 5), ("AC", 19), ("MB", 32), ("AP", 88)], ["FS", "AC"]),
    21: (14, [("FS", 5), ("ID", 19), ("MB", 32), ("AP", 88)], ["FS", "ID"]),
}


def frame_expectation(data):
    code = min(data[0] >> 3, 24)
    if code not in FORMATS:
        return ["none", f"log Debug ModeSDecoder Undefined DF-{code} message detected."]
    size, fields, named = FORMATS[code]
    if len(data) < size:
        return ["valid 0", "parity 000000", "address 000000"]
    data = data[:size]
    remainder = parity(data)
    logs, valid, address = [], 1, 0
    if code == 19 and number(data, 5, 3) != 0:
        logs.append(f"log Info DF19Message AF = {number(data, 5, 3)}, reserved for military applications.")
        text = f"AF: {number(data, 5, 3)}; AA: 00; ME: "
        return (["valid 1", f"parity {remainder:06X}", "address 000000", f"description {text}",
                 f"field AF 5 3 {number(data, 5, 3)}"] + logs)
    if code in (17, 18, 19):
        if remainder != number(data, 88, 24):
            valid = 0
            logs.append(f"log Info DF{code}Message Parity check failed.")
        else:
            address = number(data, 8, 24)
    elif code == 11:
        address = number(data, 8, 24)
    else:
        address = remainder ^ number(data, 8 * size - 24, 24)
    texts = {name: FIELDS[name][1](data, position) for name, position in fields}
    lines = [f"valid {valid}", f"parity {remainder:06X}", f"address {address:06X}"]
    lines.append("description " + "; ".join(f"{name}: {texts[name]}" for name in named))
    lines += [f"field {name} {position} {FIELDS[name][0]} {texts[name]}" for name, position in fields]
    return lines + logs


def with_parity(data, overlay=0):
    remainder = parity(data + bytes(3)) ^ overlay
    return data + remainder.to_bytes(3, "big")


def put(data, position, width, value):
    total = int.from_bytes(data, "big")
    shift = 8 * len(data) - position - width
    total = total & ~(((1 << width) - 1) << shift) | value << shift
    return total.to_bytes(len(data), "big")


def make_frames():
    address, interrogator = 0x4840D6, 3
    me = bytes.fromhex("58C382D690C8AC")
    for name, bad in [("a known identification squitter", "8D4840D6202CC371C32CE0576098"),
                      ("a known all-call reply", "5D4CA2D46B609F")]:
        yield name, bytes.fromhex(bad)
    for code in range(32):
        if min(code, 24) not in FORMATS:
            yield f"DF{code} has no class", bytes([code << 3 | 5]) + bytes(13)

    def head(code, sub):
        return bytes([code << 3 | sub])

    for sub in range(8):
        for code in (0, 4, 5):
            yield f"DF{code}, first field {sub}", with_parity(head(code, sub) + bytes.fromhex("000C38"), address)
        yield f"DF11, capability {sub}", with_parity(head(11, sub) + address.to_bytes(3, "big"), interrogator)
        for code in (16, 20, 21):
            yield f"DF{code}, first field {sub}", with_parity(head(code, sub) + bytes.fromhex("000C38") + me, address)
        for code in (17, 18, 19):
            frame = with_parity(head(code, sub) + address.to_bytes(3, "big") + me)
            yield f"DF{code}, first field {sub}", frame
            yield f"DF{code}, first field {sub}, parity wrong in its last bit", frame[:-1] + bytes([frame[-1] ^ 1])
    for bit in range(13):
        yield f"altitude code with bit {bit} alone", with_parity(put(head(4, 0) + bytes(3), 19 + bit, 1, 1), address)
        yield f"identity with bit {bit} alone", with_parity(put(head(5, 0) + bytes(3), 19 + bit, 1, 1), address)
        yield f"long identity without bit {bit}", with_parity(
            put(put(head(21, 0) + bytes(3), 19, 13, 0x1FFF), 19 + bit, 1, 0) + me, address)
    for code in (0x0000, 0x0C38, 0x0C28, 0x0C78, 0x1FFF, 0x1FBF, 0x1FEF, 0x1FAF):
        for df in (0, 4, 16, 20):
            frame = put(head(df, 0) + bytes(3), 19, 13, code) + (me if df > 11 else b"")
            yield f"DF{df}, altitude code {code:04X}", with_parity(frame, address)
    for address in (0, 1, 0x000123, 0xFFFFFF):
        yield f"hidden address {address:06X}", with_parity(head(4, 0) + bytes(3), address)
        yield f"announced address {address:06X}", with_parity(head(17, 5) + address.to_bytes(3, "big") + me)
        yield f"all-call address {address:06X}", with_parity(head(11, 5) + address.to_bytes(3, "big"), 0)
    for code, (size, _, _) in FORMATS.items():
        whole = with_parity(head(code, 0) + bytes(range(1, size - 3)))
        for length in range(1, size):
            yield f"DF{code} cut to {length} bytes", whole[:length]
        yield f"DF{code} with more bytes after it", whole + b"\x12\x34"


def frame_vectors():
    """(name, input, expected lines) of each."""
    for name, data in make_frames():
        yield name, f"frame {data.hex().upper()}", [escaped(line) for line in frame_expectation(data)]
