#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Makes the test vectors frames.txt and payloads.txt: inputs, and what must come of them.

The expected values are worked out here, from the rules, by code that shares nothing with the library. With --check,
the files are compared instead of written.

A vector is a line with its input and indented lines with what is expected, in a fixed order:

    frame HEX               one frame for the reply class of its downlink format
    payload HEX VERSION     one ME payload for a transmitter of this version (3 is unknown)
      none                  no message results
      class NAME, valid, parity, address, description, value NAME VALUE, field NAME POSITION WIDTH TEXT
      log LEVEL MODULE TEXT

Bytes that are no printable characters stand as \\xNN.
"""
import math
import pathlib
import sys

# ---------------------------------------------------------------- frames

GENERATOR = 0x1FFF409


def parity(data):
    """Remainder of a frame without its last 24 bits, by division bit by bit."""
    value = int.from_bytes(data[:-3], "big") << 24
    for shift in range(8 * len(data) - 25, -1, -1):
        if value >> (shift + 24) & 1:
            value ^= GENERATOR << shift
    return value


def number(data, position, width):
    value = int.from_bytes(data, "big")
    return value >> (8 * len(data) - position - width) & ((1 << width) - 1)


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


# ---------------------------------------------------------------- payloads

TYPES = (["RESERVED"] + ["ACID"] * 4 + ["POS_GND"] * 4 + ["POS_AIR"] * 10 + ["AIR_VEL"] + ["POS_AIR"] * 3 + ["TEST"]
         + ["RESERVED"] * 4 + ["AC_STATUS", "TG_STATUS", "RESERVED", "OP_STATUS"])

CLASSES = {  # by version 0, 1, 2, unknown
    "ACID": ["ADSBIdentityMessage"] * 4,
    "POS_GND": ["ADSBSurfacePositionMessage"] * 4,
    "POS_AIR": [f"ADSBAirbornePositionMessageV{v}" for v in range(3)] + [None],
    "AIR_VEL": [f"ADSBAirborneVelocityMessageV{v}" for v in range(3)] + [None],
    "TEST": ["ADSBTestMessage"] * 4,
    "AC_STATUS": ["ADSBAircraftStatusMessageV0", "ADSBAircraftStatusMessageV0", "ADSBAircraftStatusMessageV2", None],
    "TG_STATUS": [None, "ADSBTargetStatusMessageV1", "ADSBTargetStatusMessageV2", None],
    "OP_STATUS": ["ADSBAircraftOperationalStatusMessage"] * 3 + [None],
}

CHARACTERS = "?ABCDEFGHIJKLMNOPQRSTUVWXYZ????? ???????????????0123456789??????"


class Invalid(Exception):
    """The payload yields no message; what was logged until then stays logged."""


class Reading:
    """What is made of one payload."""

    def __init__(self, data, version):
        self.data, self.version = data, version
        self.fields, self.values, self.logs, self.text = [], [], [], ""

    def at(self, position, width):
        return number(self.data, position, width)

    def field(self, name, position, width, text):
        self.fields.append((position, name, width, text))

    def decimal(self, name, position, width):
        value = self.at(position, width)
        self.field(name, position, width, str(value))
        return value

    def value(self, name, value):
        self.values.append(f"value {name} " + (f"{value:.9g}" if isinstance(value, float) else str(value)))

    def log(self, level, module, text):
        self.logs.append(f"log {level} {module} {text}")


def identification(r):
    category = r.decimal("EMT_CAT", 5, 3)
    callsign = "".join(CHARACTERS[r.at(8 + 6 * i, 6)] for i in range(8))
    for i, character in enumerate(callsign):
        r.field(f"CHAR_{i + 1}", 8 + 6 * i, 6, character)
    r.value("emitterCategory", category)
    r.value("callsign", callsign)
    r.text = f"TC=ACID, EC={category}, CS={callsign}"


def compact_position(r):
    time = r.decimal("T", 20, 1)
    odd = r.at(21, 1)
    r.field("CPR_FMT", 21, 1, "ODD" if odd else "EVEN")
    latitude, longitude = r.decimal("CPR_LAT", 22, 17), r.decimal("CPR_LON", 39, 17)
    r.value("timeApplicability", time)
    r.value("cprFormat", 1 - odd)
    r.value("cprLatitude", latitude)
    r.value("cprLongitude", longitude)
    return f", CPR={'ODD' if odd else 'EVEN'}, LAT={latitude}, LON={longitude}"


def airborne_position(r):
    gnss = r.at(0, 5) >= 20
    source = "GNSS" if gnss else "BARO"
    r.field("ALT_SRC", 0, 5, source)
    step = 25 if r.at(15, 1) else 100
    r.field("ALT_RES", 15, 1, f"{step}FT")
    altitude = ((r.data[1] & 0xFE) * 8 + (r.data[6] >> 4)) * step - 1000
    r.field("ALT", 8, 12, f"{altitude}FT")
    r.value("altitudeSource", int(gnss))
    r.value("altResolution", step)
    r.value("altitude", altitude)
    ending = compact_position(r)
    bit = r.decimal("NIC_SUPP_B" if r.version == 2 else "SAF", 7, 1)
    r.value("nicSupplementB" if r.version == 2 else "singalAntena", bit)
    r.text = f"TC=POS_AIR, AT={source}, ALT={altitude}{ending}"


def ground_speed(code):
    if 3 <= code <= 8:
        return (code - 3) * 0.14583332 + 0.125
    if 9 <= code <= 12:
        return (code - 9) * 0.25 + 1.0
    if 13 <= code <= 38:
        return (code - 13) * 0.5 + 2.0
    if 39 <= code <= 93:
        return (code - 39) + 15.0
    if 94 <= code <= 108:
        return 2 * (code - 94) + 70.0
    if 109 <= code <= 123:
        return (code - 109) * 5.0 + 100.0
    return {2: 0.125, 124: 175.0}.get(code, 0.0)


def surface_position(r):
    code = r.decimal("MOV_CODE", 5, 7)
    if code > 124:
        r.log("Error", "ADSBGndPosMsg", f"Reserved Movement Code: {code}.")
    speed = ground_speed(code)
    r.field("GND_SPD", 5, 7, f"{speed:f}")
    status = r.decimal("HDG_STATE", 12, 1)
    heading = r.at(13, 7) * 360 * 0.0078125 if status else 0.0
    r.field("HDG", 13, 7, f"{heading:f}")
    r.value("movementCode", code)
    r.value("movement", int(1 <= code <= 124))
    r.value("groundSpeed", speed)
    r.value("headingValid", status)
    r.value("heading", heading)
    r.text = f"TC=POS_GND, SPD={speed:g}, HDG={heading:g}{compact_position(r)}"


VELOCITY_TYPES = {1: ("GROUND_SPEED", "GS"), 2: ("GROUND_SPEED_SUPER_SONIC", "GS_SS"), 3: ("AIR_SPEED", "AS"),
                  4: ("AIR_SPEED_SUPER_SONIC", "AS_SS")}


def airborne_velocity(r):
    subtype = r.at(5, 3)
    if subtype not in VELOCITY_TYPES:
        r.log("Error", "ADSBAirVelMsg", f"Unknown Subtype={subtype}.")
        raise Invalid
    name, short = VELOCITY_TYPES[subtype]
    r.field("SUB_TYPE", 5, 3, name)
    if subtype > 2:
        r.log("Warning", "ADSBAirVelMsg", "Unsupported AIR_SPD message detected.")
        raise Invalid
    west, raw_east, south, raw_north = r.at(13, 1), r.at(14, 10), r.at(24, 1), r.at(25, 10)
    r.field("DIR_EW", 13, 1, "E->W" if west else "W->E")
    r.field("VEL_EW", 14, 10, str(raw_east))
    r.field("DIR_NS", 24, 1, "N->S" if south else "S->N")
    r.field("VEL_NS", 25, 10, str(raw_north))
    speed = heading = 0.0
    if raw_east and raw_north:
        factor = 4 if subtype == 2 else 1
        east = (factor * raw_east - factor) * (-1 if west else 1)
        north = (factor * raw_north - factor) * (-1 if south else 1)
        speed = math.sqrt(east * east + north * north)
        heading = math.atan2(east, north) * 360 / 6.283185307179586
        heading = heading + 360 if heading < 0 else heading
        heading = 0.0 if speed == 0.0 else heading
    gnss, down = r.at(35, 1), r.at(36, 1)
    r.field("VR_SRC", 35, 1, "GNSS" if gnss else "BARO")
    r.field("VR_SIGN", 36, 1, "DOWN" if down else "UP")
    steps = (r.data[4] & 7) << 6 | r.data[4] >> 2
    r.field("VR", 37, 9, str(steps))
    rate = (steps - 1) * 64 * (-1 if down else 1) if steps else 0
    r.value("velocityType", subtype)
    r.value("groundSpeed", speed)
    r.value("heading", heading)
    r.value("verticalRateSource", gnss)
    r.value("verticalRate", rate)
    r.text = f"TC=AIR_VEL, ST={short}, GS={speed:g}, HDG={heading:g}, VR={rate}"
    if r.version == 0:
        nucr = r.data[1] >> 3 & 3
        r.field("NUC_R", 10, 3, str(nucr))
        r.value("nucr", nucr)
        r.text += f", NUCr={nucr}"


EMERGENCIES = ["NO_EMG", "EMERGENCY", "MEDICAL", "MIN_FUEL", "NO_COMM", "HIJACK", "AC_DOWNED", "UNDEFINED"]


def aircraft_status(r):
    module, subtype, emergency, mode_a = "ADSBAcStatMsg", r.at(5, 3), 0, 0
    if subtype > 2:
        r.log("Error", module, f"Unknown Subtype={subtype}.")
        raise Invalid
    r.field("SUB_TYPE", 5, 3, ["NO_INFO", "EMERGENCY", "TCAS_RA"][subtype])
    if subtype == 1:
        emergency = r.at(8, 3)
    else:
        r.log("Error", module, f"Unsupported subtype {subtype} detected.")
    r.field("EMG_STATE", 8, 3, EMERGENCIES[emergency])
    r.value("subtype", subtype)
    r.value("emergencyState", emergency)
    r.text = "TC=AC_STATUS" + (f", ST=EMG, EMG={emergency}" if subtype == 1 else "")
    if r.version < 2:
        return
    if subtype == 2:
        r.log("Warning", module, "Unsupported TCAS RA message detected.")
        raise Invalid
    if subtype == 1:
        mode_a = r.data[0] + 256 * (r.data[1] & 0xF)
        r.field("MODE_A", 11, 13, f"{mode_a:04o}")
    r.value("modeACode", mode_a)
    r.text += f", MA={mode_a:04o}"


def target_status(r):
    subtype = r.at(5, 2)
    if subtype > 1:
        r.log("Error", "ADSBTgStatMsg", f"Unknown Subtype={subtype}.")
        raise Invalid
    r.field("SUB_TYPE", 5, 2, str(subtype))
    nacp, nic_baro, sil = r.decimal("NAC_P", 39, 4), r.decimal("NIC_BARO", 43, 1), r.decimal("SIL", 44, 2)
    for name, value in (("subtype", subtype), ("nacp", nacp), ("nicBaro", nic_baro), ("sil", sil)):
        r.value(name, value)
    r.text = f"TC=TG_STATUS, ST={subtype}, NACp={nacp}, NICbaro={nic_baro}, SIL={sil}"
    if r.version == 2:
        if subtype != 1:
            raise Invalid
        supplement = r.decimal("SIL_SUPP", 7, 1)
        r.value("silSupp", supplement)
        r.text += f", SILsupp={supplement}"


def operational_status(r):
    version = r.at(40, 3)
    if version == 0:
        r.log("Error", "ADSBOpStatMsg", "MOPS Version 0 detected.")
        raise Invalid
    if version > 2:
        r.log("Error", "ADSBOpStatMsg", f"Unsupported MOPS Version {version} detected.")
    r.field("VER_NUM", 40, 3, str(version))
    supplement = r.decimal("NIC_SUPP_A", 43, 1)
    r.value("versionNumber", version)
    r.value("version", min(version, 3))
    r.value("nicSupplementA", supplement)
    r.text = f"TC=OP_STAT, VN={version}, NICsa={supplement}"


def test_message(r):
    subtype = r.decimal("SUB_TYPE", 5, 3)
    if subtype:
        r.log("Error", "ADSBTestMsg", f"Unknown Subtype={subtype}.")
    r.field("DATA", 8, 48, r.data[1:].hex().upper())
    r.value("subtype", subtype)
    r.value("testData", r.data[1:].hex().upper())
    r.text = f"TC=TEST, ST={chr(subtype)}"


READERS = {"ACID": identification, "POS_GND": surface_position, "POS_AIR": airborne_position,
           "AIR_VEL": airborne_velocity, "TEST": test_message, "AC_STATUS": aircraft_status,
           "TG_STATUS": target_status, "OP_STATUS": operational_status}


def escaped(text):
    return "".join(c if " " <= c <= "~" else f"\\x{ord(c):02X}" for c in text)


def payload_expectation(data, version):
    if len(data) < 7:
        return ["none"]
    data = data[:7]
    code = data[0] >> 3
    kind = TYPES[code]
    if kind == "RESERVED":
        return ["none", f"log Warning ADSBDecoder Unsupported type code = {code} (Reserved)."]
    name = CLASSES[kind][version]
    if name is None:
        return ["none"]
    r = Reading(data, version)
    r.field("TYPE", 0, 5, kind)
    r.field("TYPE_CODE", 0, 5, str(code))
    try:
        READERS[kind](r)
    except Invalid:
        return ["none"] + r.logs
    r.fields.sort(key=lambda field: field[0])  # stable
    lines = [f"class {name}", f"description {escaped(r.text)}"] + r.values
    return lines + [f"field {n} {p} {w} {escaped(t)}" for p, n, w, t in r.fields] + r.logs


class Bits:
    """A payload put together bit by bit."""

    def __init__(self):
        self.text = ""

    def put(self, value, width):
        self.text += format(value, f"0{width}b")
        return self

    def payload(self):
        return int(self.text.ljust(56, "0"), 2).to_bytes(7, "big")


def velocity_payload(subtype, west=0, east=0, south=0, north=0, source=0, sign=0, rate=0, nucr=0):
    bits = Bits().put(19, 5).put(subtype, 3).put(0, 2).put(nucr, 3).put(west, 1).put(east, 10)
    return bits.put(south, 1).put(north, 10).put(source, 1).put(sign, 1).put(rate, 9).put(0, 10).payload()


def make_payloads():
    every = range(4)
    for code in range(32):
        for version in every:
            for fill in (0x00, 0xFF, 0x5A):
                yield f"type code {code}, rest {fill:02X}", bytes([code << 3 | fill & 7]) + bytes([fill]) * 6, version
    for length in range(7):
        yield f"only {length} bytes", bytes.fromhex("200420F1CB3820")[:length], 2
    yield "more than seven bytes", bytes.fromhex("200420F1CB3820FFFF"), 2
    yield "blanks at the end of a callsign are kept", bytes.fromhex("200420F1CB3820"), 0
    for first in range(0, 64, 8):
        bits = Bits().put(3, 5).put(first // 8, 3)
        for code in range(first, first + 8):
            bits.put(code, 6)
        yield f"characters {first} to {first + 7}", bits.payload(), 2
    for version in range(3):
        yield "a known position", bytes.fromhex("58C382D690C8AC"), version
        for code in list(range(9, 19)) + [20, 21, 22]:
            for q, f, t, bit in ((0, 0, 0, 1), (1, 1, 0, 0), (1, 0, 1, 1), (0, 1, 1, 0)):
                bits = Bits().put(code, 5).put(0, 2).put(bit, 1).put(0x61, 7).put(q, 1).put(8, 4).put(t, 1).put(f, 1)
                yield f"position, Q {q}, F {f}, T {t}", bits.put(93000, 17).put(51372, 17).payload(), version
        for altitude in (0, 1, 0x7F):
            for low in (0, 0xF):
                bits = Bits().put(11, 5).put(0, 3).put(altitude, 7).put(1, 1).put(0, 4).put(0, 28).put(low, 4)
                yield f"altitude bits {altitude} and {low}", bits.payload(), version
    for code in range(128):
        bits = Bits().put(7, 5).put(code, 7).put(code % 2, 1).put(127 - code, 7).put(0, 1).put(code // 2 % 2, 1)
        yield f"movement code {code}", bits.put(code * 1000, 17).put(131071 - code, 17).payload(), code % 4
    for version in range(3):
        for subtype in range(8):
            yield f"velocity subtype {subtype}", velocity_payload(subtype, 1, 10, 0, 10, rate=17, nucr=5), version
        for east in (0, 1, 2, 10, 1022, 1023):
            for north in (0, 1, 10, 1023):
                for signs in range(4):
                    payload = velocity_payload(1 + signs % 2, signs & 1, east, signs >> 1, north)
                    yield f"components {east}, {north}, signs {signs}", payload, version
        for nucr in range(8):
            yield f"NUCr bits {nucr}", velocity_payload(1, east=100, north=100, nucr=nucr), version
        for rate in (0, 1, 2, 37, 0x40, 0x1C0, 0x1FF):
            for sign in (0, 1):
                for source in (0, 1):
                    yield f"rate {rate}, sign {sign}", velocity_payload(1, 0, 50, 0, 50, source, sign, rate), version
    for version in range(3):
        for subtype in range(8):
            for second in (0x00, 0x05, 0x2F, 0x40, 0x60, 0x80, 0xA0, 0xC5, 0xE0):
                yield f"aircraft status {subtype}", bytes([28 << 3 | subtype, second, 0, 0, 0, 0, 0]), version
    for version in (1, 2):
        for subtype in range(4):
            for bit in (0, 1):
                for fifth, sixth in ((0, 0), (1, 0), (0, 0xE0), (0, 0x10), (0, 0x0C), (1, 0xFF)):
                    first = 29 << 3 | subtype << 1 | bit
                    yield f"target status {subtype}", bytes([first, 0, 0, 0, fifth, sixth, 0]), version
    for version in range(3):
        for number_ in range(8):
            for bit in (0, 1):
                for subtype in (0, 1, 7):
                    payload = bytes([31 << 3 | subtype, 0, 0, 0, 0, number_ << 5 | bit << 4, 0])
                    yield f"operational status, version number {number_}", payload, version
    for subtype in range(8):
        yield f"test message {subtype}", bytes([23 << 3 | subtype]) + bytes.fromhex("0123ABCDEF00"), subtype % 4


# ---------------------------------------------------------------- files

def frames_text():
    seen, blocks = set(), []
    for name, data in make_frames():
        if data not in seen:
            seen.add(data)
            blocks.append("\n".join([f"# {name}", f"frame {data.hex().upper()}"]
                                    + [f"  {escaped(line)}" for line in frame_expectation(data)]))
    return "\n\n".join(blocks) + "\n"


def payloads_text():
    seen, blocks = set(), []
    for name, data, version in make_payloads():
        if (data, version) not in seen:
            seen.add((data, version))
            blocks.append("\n".join([f"# {name}", f"payload {data.hex().upper() or '-'} {version}"]
                                    + [f"  {line}" for line in payload_expectation(data, version)]))
    return "\n\n".join(blocks) + "\n"


def main():
    folder = pathlib.Path(__file__).resolve().parent
    for name, text in (("frames.txt", frames_text()), ("payloads.txt", payloads_text())):
        path = folder / name
        if "--check" not in sys.argv:
            path.write_text(text, encoding="ascii")
        elif path.read_text(encoding="ascii") != text:
            sys.exit(f"{name} is not what make_vectors.py makes")


if __name__ == "__main__":
    main()
