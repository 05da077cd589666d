# SPDX-License-Identifier: MIT
"""Vectors of ME payloads, and what the message class of their type code and version makes of them."""
import math

from vector_text import escaped, number

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


def payload_vectors():
    """(name, input, expected lines) of each."""
    for name, data, version in make_payloads():
        yield name, f"payload {data.hex().upper() or '-'} {version}", payload_expectation(data, version)
