# SPDX-License-Identifier: MIT
import datetime
import gzip
import math
import pathlib
import re
import threading
import time
from typing import Any, Callable, Literal, Union

import numpy
import numpy.typing
import pytest

import trevallo
from trevallo import ADSBMessage, ADSBTarget, DFMessage, Log, ModeSDecoder, ModeSEncapsulation, ModeSMessage, airspace

from conftest import ROOT, recording
from frames import ADDRESS, IDENTITY, POSITION_EVEN, VELOCITY, beast, with_parity

Frames = numpy.typing.NDArray[numpy.void]
Row = dict[str, Any]
Values = Literal["standard", "library"]

ABSENT: Row = {"signalAmplitude": 0, "downlinkFormat": -1, "icaoAddress": 0, "confidence": 0, "decoded": False, "tracked": False,
               "typeCode": -1, "register": 0, "callsign": "", "squawk": -1, "isOnGround": -1, "altitude": math.nan,
               "altitudeGnss": math.nan, "latitude": math.nan, "longitude": math.nan, "groundSpeed": math.nan,
               "track": math.nan, "verticalRate": math.nan, "verticalRateGnss": math.nan, "indicatedAirspeed": math.nan,
               "trueAirspeed": math.nan, "mach": math.nan, "magneticHeading": math.nan}
DAY = 86_400_000  # ms
NO_DATE = "1970-01-02"  # on which times are whose date is not known


def undoubled(stream: bytes) -> bytes:
    """Frames begin with a single escape byte; inside them it is sent twice."""
    begins = "".join(chr(byte) for byte in stream).split("\x1a\x1a")
    # a doubled byte stays apart from the single ones that begin frames
    return "\x1a".join(begins).encode("latin-1")


def signals_of(stream: bytes) -> list[int]:
    """Frames are an escape byte, their type, six bytes of time, the signal and the reply."""
    plain, at, signals = undoubled(stream), 0, []
    while at < len(plain):
        signals.append(plain[at + 8])
        at += 9 + {ord("1"): 2, ord("2"): 7, ord("3"): 14}[plain[at + 1]]
    return signals


def records_of(stream: bytes) -> list[ModeSEncapsulation]:
    return ModeSEncapsulation.extract(bytearray(undoubled(stream)), ModeSEncapsulation.Beast)


def reported(target: ADSBTarget, message: ModeSMessage, row: Row) -> Row:
    """The items of the target that replies of this kind carry and that have the time of this one."""
    now = message.timeStamp
    items: Row = {}
    kind = row["downlinkFormat"]
    squitter = ADSBMessage.typeByCode(row["typeCode"]) if kind == 17 else None
    if kind in {0, 4, 16, 20} or squitter is ADSBMessage.POS_AIR:
        if target.altitudeBaroLastUpdate == now:
            items["altitude"] = target.altitudeBaro
    if kind in {0, 4, 5, 16, 20, 21} or squitter is ADSBMessage.POS_AIR:
        if target.groundStatusLastUpdate == now and target.groundStatusValid:
            items["isOnGround"] = target.groundStatus is ADSBTarget.ON_GROUND
    if kind in {5, 21} and target.squawkLastUpdate == now:
        items["squawk"] = target.squawk
    if squitter is ADSBMessage.ACID and target.callsignLastUpdate == now:
        items["callsign"] = target.callsign
    if squitter is ADSBMessage.POS_AIR and target.positionLastUpdate == now:
        items |= {"latitude": target.latitude, "longitude": target.longitude}
    if squitter is ADSBMessage.AIR_VEL and target.groundSpeedLastUpdate == now:
        items |= {"groundSpeed": target.groundSpeed, "track": target.heading}
    if squitter is ADSBMessage.AIR_VEL and target.verticalRateBaroLastUpdate == now:
        items["verticalRate"] = target.verticalRateBaro
    return items


def position_of(target: trevallo.ADSBTarget | None) -> tuple[int, float, float] | None:
    return (target.positionLastUpdate, target.latitude, target.longitude) if target else None


def step_by_step(records: list[ModeSEncapsulation]) -> list[Row]:
    """Without the checks of positions, which must find nothing in what is decoded so."""
    decoder, tracker = ModeSDecoder(), trevallo.ADSBTracker()
    rows = []
    for record in records:
        record.timeStamp = DAY + record.timeStamp % DAY  # the extractor gives it the date of today
        row = dict(ABSENT, timeStamp=record.timeStamp)
        rows.append(row)
        if len(record.data) > 2:
            row["downlinkFormat"] = DFMessage.downlinkFormatByCode(record.data[0] >> 3)
        message = decoder.decode(ModeSMessage.DOWNLINK, record)
        if message is None:
            continue
        row |= {"decoded": True, "icaoAddress": message.icaoAddress, "confidence": message.confidence}
        if row["downlinkFormat"] in {17, 18}:
            row["typeCode"] = message.data[4] >> 3
        is_repaired = message.data != record.data
        known = tracker.findTarget(message.icaoAddress)
        if is_repaired and known is None:
            continue
        before = position_of(known)
        target = tracker.procModeSMsg(message)
        if target is not None:
            row |= {"tracked": True} | reported(target, message, row)
        if position_of(target) == before:  # of an earlier message with the same time
            row |= {"latitude": math.nan, "longitude": math.nan}
    return rows


def assert_equal(frames: Frames, rows: list[Row]) -> None:
    assert len(frames) == len(rows)
    for name in frames.dtype.names or ():
        expected = numpy.array([row[name] for row in rows])
        column = frames[name].astype("i8") if name == "timeStamp" else frames[name]
        numpy.testing.assert_array_equal(column, expected, err_msg=name)


def damaged(frame: bytes) -> bytes:
    return bytes([*frame[:9], frame[9] ^ 0x10, *frame[10:]])


def avr(*frames: bytes) -> bytes:
    return b"".join(b"*" + frame.hex().encode() + b";\n" for frame in frames)


def quickest(call: Callable[[], object]) -> float:
    """Seconds of the processor, of the quickest of a few."""
    times = []
    for _ in range(5):
        start = time.process_time()
        call()
        times.append(time.process_time() - start)
    return min(times)


@pytest.fixture(autouse=True)
def quiet() -> None:
    Log.setShowLevel(Log.Error)


def test_a_whole_recording_takes_a_fraction_of_the_time_of_a_loop(sample: bytes) -> None:
    def loop() -> None:
        decoder, tracker = ModeSDecoder(), trevallo.ADSBTracker()
        for record in records_of(sample):
            message = decoder.decode(ModeSMessage.DOWNLINK, record)
            if message is not None:
                tracker.procModeSMsg(message)

    assert 3 * quickest(lambda: trevallo.decode_stream(sample, ModeSEncapsulation.Beast)) < quickest(loop)


def test_the_librarys_values_are_those_that_it_gives_step_by_step(sample: bytes) -> None:
    frames = trevallo.decode_stream(sample, ModeSEncapsulation.Beast, values="library")
    rows = step_by_step(records_of(sample))
    for row, signal in zip(rows, signals_of(sample), strict=True):
        row["signalAmplitude"] = signal
    assert_equal(frames, rows)
    assert (len(frames), frames["decoded"].sum(), frames["tracked"].sum()) == (14662, 14574, 14427)
    for name in ("altitude", "latitude", "groundSpeed", "verticalRate"):
        assert numpy.isfinite(frames[name]).sum() > 1000
    assert (frames["callsign"] != "").sum() > 100 and (frames["squawk"] >= 0).sum() > 100


SURFACE = range(5, 9)  # type codes, whose speed depends on the version of the transmitter
FIELDS = {"callsign": "callsign", "squawk": "squawk", "altitude": "altitude", "groundSpeed": "groundspeed", "track": "track",
          "indicatedAirspeed": "indicated_airspeed", "trueAirspeed": "true_airspeed", "mach": "mach",
          "magneticHeading": "magnetic_heading"}


def values_of(reply: airspace.Reply) -> Row:
    """What rows have of a reply by the standards."""
    told = reply.message.to_dict()
    if reply.registerChoice and reply.registerChoice.isUnsure:
        told = {name: told[name] for name in ("altitude", "squawk") if name in told}
    values: Row = {column: told[name] for column, name in FIELDS.items() if name in told}
    if "squawk" in values:
        values["squawk"] = int(values["squawk"], 8)
    is_barometric = told.get("vr_source") == "BARO" or told.get("bds") == "5,3"
    rates = {"baro_vertical_rate": "verticalRate", "inertial_vertical_rate": "verticalRateGnss",
             "vertical_rate": "verticalRate" if is_barometric else "verticalRateGnss"}
    return values | {column: told[name] for name, column in (rates | {"true_track": "track"}).items() if name in told}


@pytest.mark.parametrize("name", ["sample", "receiver_session", "petersburg"])
def test_rows_have_the_values_that_the_standards_give_their_frames(sample: bytes, name: str) -> None:
    data = sample if name == "sample" else recording(f"{name}.beast")
    stream, sky = airspace.Stream(), airspace.Sky()
    frames, rows = stream.feed(data) + stream.finish(), trevallo.decode_stream(data)
    columns = [name for name in rows.dtype.names or () if name in {*FIELDS, "verticalRate", "verticalRateGnss"}]
    compared = 0
    for frame, row in zip(frames, rows, strict=True):
        reply = sky.take(frame)
        if not reply.isTracked or row["typeCode"] in SURFACE:
            continue
        choice, values = reply.registerChoice, values_of(reply)
        assert row["register"] == (choice.best or 0 if choice and not choice.isUnsure else 0)
        for column in columns:
            cell = row[column].strip() if column == "callsign" else row[column]
            assert cell == pytest.approx(values.get(column, ABSENT[column]), rel=1e-6, nan_ok=True), (frame, column)
            compared += column in values
    assert compared > 1000


def position_on_the_ground(movement: int, track: int) -> bytes:
    content = 7 << 51 | movement << 44 | 1 << 43 | track << 36
    return with_parity(IDENTITY[:4] + content.to_bytes(7, "big"))


def test_a_position_on_the_ground_has_speed_and_track() -> None:
    [row] = trevallo.decode_stream(avr(position_on_the_ground(movement=64, track=32)))  # 40 to 41 kt
    assert (row["isOnGround"], row["groundSpeed"], row["track"]) == (1, 40.5, 90)
    assert math.isnan(row["altitude"]) and math.isnan(row["latitude"])


@pytest.mark.parametrize("type_code, column", [(11, "altitude"), (20, "altitudeGnss")])
def test_the_type_of_a_position_says_what_its_altitude_is_above(type_code: int, column: str) -> None:
    frame = POSITION_EVEN[:4] + bytes([type_code << 3 | POSITION_EVEN[4] & 7]) + POSITION_EVEN[5:]
    [row] = trevallo.decode_stream(avr(with_parity(frame)))
    assert [name for name in ("altitude", "altitudeGnss") if numpy.isfinite(row[name])] == [column]
    assert row[column] == 38_000 and row["isOnGround"] == 0


@pytest.mark.parametrize("values, barometric, gnss", [("standard", math.nan, -832), ("library", -64, math.nan)])
def test_values_are_by_the_standards_or_those_of_the_library(values: Values, barometric: float, gnss: float) -> None:
    [row] = trevallo.decode_stream(avr(VELOCITY), values=values)
    numpy.testing.assert_array_equal([row["verticalRate"], row["verticalRateGnss"]], [barometric, gnss])
    assert row["groundSpeed"] == pytest.approx(159.2, abs=0.1)


def test_what_are_no_values_is_refused() -> None:
    with pytest.raises(ValueError, match="standard or library"):
        trevallo.decode_stream(b"", values="mine")  # type: ignore[arg-type]


def raw_zstd(data: bytes) -> bytes:
    """Blocks that are stored as they are (RFC 8878)."""
    size = 100_000
    blocks = [data[at:at + size] for at in range(0, len(data), size)]
    headers = [(len(block) << 3 | (at == len(blocks) - 1)).to_bytes(3, "little") for at, block in enumerate(blocks)]
    return b"\x28\xb5\x2f\xfd\x00\x58" + b"".join(header + block for header, block in zip(headers, blocks))


@pytest.mark.parametrize("packed", [bytes, gzip.compress, raw_zstd], ids=["plain", "gzip", "zstd"])
def test_a_file_gives_the_rows_of_its_bytes(sample: bytes, tmp_path: pathlib.Path, packed: Callable[[bytes], bytes]) -> None:
    path = tmp_path / "recording"
    path.write_bytes(packed(sample))
    rows = trevallo.decode_stream(sample, ModeSEncapsulation.Beast)
    names: list[Union[str, pathlib.Path]] = [path, str(path)]
    for name in names:
        assert trevallo.decode_stream(name).tobytes() == rows.tobytes()
        assert trevallo.decode_stream(name, ModeSEncapsulation.Beast).tobytes() == rows.tobytes()


def test_a_large_file_is_read_to_its_end(sample: bytes, tmp_path: pathlib.Path) -> None:
    path = tmp_path / "recording.gz"
    path.write_bytes(gzip.compress(sample * 20, 1))
    assert len(trevallo.decode_stream(path)) == 20 * 14662


def test_what_comes_before_damage_of_a_file_is_read_and_the_damage_reported(sample: bytes, tmp_path: pathlib.Path) -> None:
    packed = gzip.compress(sample)
    damaged = packed[:-100_000] + bytes(100) + packed[-99_900:]
    for data, told in ((packed[:-100_000], "cut short"), (damaged, "damaged")):
        path = tmp_path / "recording.gz"
        path.write_bytes(data)
        with pytest.warns(UserWarning, match=f"recording.gz: its compressed data is {told}"):
            rows = trevallo.decode_stream(path)
        whole = trevallo.decode_stream(sample)
        same = 4000
        assert len(whole) > len(rows) > same and rows[:same].tobytes() == whole[:same].tobytes()


def test_a_file_that_cannot_be_read_is_an_error(tmp_path: pathlib.Path) -> None:
    with pytest.raises(FileNotFoundError, match="nowhere"):
        trevallo.decode_stream(tmp_path / "nowhere")
    with pytest.raises(IsADirectoryError):
        trevallo.decode_stream(tmp_path)
    empty = tmp_path / "empty"
    empty.touch()
    assert len(trevallo.decode_stream(empty)) == 0


def test_format_and_doubling_are_found_out(sample: bytes) -> None:
    frames = trevallo.decode_stream(sample)
    for same in (trevallo.decode_stream(sample, ModeSEncapsulation.Beast, doubled=True),
                 trevallo.decode_stream(undoubled(sample)),
                 trevallo.decode_stream(undoubled(sample), ModeSEncapsulation.Beast, doubled=False)):
        assert frames.tobytes() == same.tobytes()


def test_the_doubling_can_be_taken_out_alone(sample: bytes) -> None:
    assert trevallo.undouble_beast(sample) == undoubled(sample)


def test_avr_gives_what_beast_gives(sample: bytes) -> None:
    records = records_of(sample)
    for record in records:
        record.timeStamp //= 1000
        record.timeStamp *= 1000  # AVR keeps whole seconds
    text = b"".join(ModeSEncapsulation.encapsulateAvr(record) for record in records)
    frames = trevallo.decode_stream(text, ModeSEncapsulation.Avr, values="library")
    assert_equal(frames, step_by_step(records))
    network = trevallo.decode_stream(text.replace(b"\n", b"\r\n"), values="library")
    assert frames.tobytes() == network.tobytes()


def test_raw_binary_is_cut_by_the_length_that_its_first_bit_gives(sample: bytes) -> None:
    records = [record for record in records_of(sample)[:500] if len(record.data) in {7, 14}]
    frames = trevallo.decode_stream(b"".join(record.data for record in records), ModeSEncapsulation.RawBin)
    assert len(frames) == len(records)
    assert frames["downlinkFormat"].tolist() == [record.data[0] >> 3 for record in records]


def test_any_bytes_are_taken(sample: bytes) -> None:
    frames = trevallo.decode_stream(sample)
    for data in (bytearray(sample), memoryview(sample), numpy.frombuffer(sample, "u1")):
        assert trevallo.decode_stream(data).tobytes() == frames.tobytes()  # type: ignore[arg-type]
    for data in (None, 5, ["*8D4840D6202CC371C32CE0576098;"]):
        with pytest.raises(TypeError, match="bytes, or the path of a file"):
            trevallo.decode_stream(data)  # type: ignore[arg-type]


def test_an_empty_stream_has_no_frames() -> None:
    for format in (*list(ModeSEncapsulation.Format)[1:], None):
        assert len(trevallo.decode_stream(b"", format)) == 0


def test_a_mode_ac_reply_is_a_row_without_format() -> None:
    [row] = trevallo.decode_stream(b"\x1a1" + bytes(7) + b"\x12\x34", ModeSEncapsulation.Beast)
    assert (row["downlinkFormat"], row["decoded"], row["icaoAddress"]) == (-1, False, 0)


def test_what_a_frame_did_not_report_is_absent() -> None:
    [row] = trevallo.decode_stream(b"*" + IDENTITY.hex().encode() + b";\n", ModeSEncapsulation.Avr)
    assert row["callsign"] == "KLM1023 " and row["icaoAddress"] == ADDRESS and row["typeCode"] == 4
    assert math.isnan(row["altitude"]) and math.isnan(row["latitude"]) and row["squawk"] == -1


def test_a_format_that_cannot_be_read_is_refused() -> None:
    with pytest.raises(ValueError, match="cannot be read"):
        trevallo.decode_stream(b"", ModeSEncapsulation.Unknown)
    with pytest.raises(ValueError, match="only Beast"):
        trevallo.decode_stream(b"", ModeSEncapsulation.Avr, doubled=True)


def test_hexadecimal_lines_are_read_too(sample: bytes) -> None:
    records = records_of(sample)[:500]
    text = b"".join(ModeSEncapsulation.encapsulateRawHex(record) for record in records)
    frames = trevallo.decode_stream(text, ModeSEncapsulation.RawHex)
    assert frames["downlinkFormat"].tolist() == [record.data[0] >> 3 for record in records]
    assert trevallo.decode_stream(text)["icaoAddress"].tolist() == frames["icaoAddress"].tolist()


@pytest.mark.parametrize("stream, told", [(b"The quick brown fox jumps over the lazy dog. ", "name its format"),
                                          (b"<!DOCTYPE html><html><head></head></html>\n", "it is a web page"),
                                          (b'{"now": 1}\n', "it is JSON")])
def test_a_stream_of_no_known_encoding_is_refused(stream: bytes, told: str) -> None:
    with pytest.raises(ValueError, match=f"begins like no.*: {told}"):
        trevallo.decode_stream(stream * 100)


@pytest.mark.parametrize("timeout", [0.0, -1.0, math.nan, math.inf])
def test_what_is_no_timeout_is_refused(timeout: float) -> None:
    with pytest.raises(ValueError, match="timeout"):
        trevallo.decode_stream(b"", ModeSEncapsulation.Avr, timeout=timeout)


@pytest.mark.parametrize("values", ["standard", "library"])
def test_aircraft_that_are_silent_for_the_timeout_are_forgotten(values: Values) -> None:
    def line(second: int, frame: bytes) -> bytes:
        record = ModeSEncapsulation()
        record.data = frame
        record.timeStamp = 1_700_000_000_000 + second * 1000
        return ModeSEncapsulation.encapsulateAvr(record)

    stream = line(0, IDENTITY) + line(100, VELOCITY) + line(101, damaged(IDENTITY))  # which makes no aircraft
    tracked = {timeout: trevallo.decode_stream(stream, ModeSEncapsulation.Avr, timeout=timeout, values=values)["tracked"].tolist()
               for timeout in (50.0, 200.0)}
    assert tracked == {50.0: [True, True, False], 200.0: [True, True, True]}


def test_the_array_owns_its_memory_and_can_be_written() -> None:
    frames = trevallo.decode_stream(b"*" + IDENTITY.hex().encode() + b";\n", ModeSEncapsulation.Avr)
    column = frames["icaoAddress"]
    frames["icaoAddress"] = 1
    del frames
    assert column.tolist() == [1]


def test_other_threads_of_python_run_meanwhile(sample: bytes) -> None:
    worker = threading.Thread(target=trevallo.decode_stream, args=(sample * 40,))
    turns = 0
    worker.start()
    while worker.is_alive():
        turns += 1
        time.sleep(0.001)
    assert turns > 10  # one that held the interpreter would give a turn or two


def test_a_signal_ends_a_long_decoding(sample: bytes) -> None:
    import signal

    class Stop(Exception):
        pass

    def stop(*_: object) -> None:
        raise Stop

    stream = sample * 200  # 70 MB
    before = signal.signal(signal.SIGALRM, stop)
    signal.setitimer(signal.ITIMER_REAL, 0.02)
    try:
        with pytest.raises(Stop):
            trevallo.decode_stream(stream)
    finally:
        signal.setitimer(signal.ITIMER_REAL, 0)
        signal.signal(signal.SIGALRM, before)


def test_without_a_date_the_same_recording_has_the_same_times_everywhere(sample: bytes) -> None:
    times = trevallo.decode_stream(sample)["timeStamp"]
    assert set(times.astype("M8[D]").astype(str)) == {NO_DATE}


@pytest.mark.parametrize("date", ["2024-05-01", datetime.date(2024, 5, 1), datetime.datetime(2024, 5, 1)])
def test_a_recording_is_of_the_date_that_is_given(sample: bytes, date: datetime.date) -> None:
    undated, dated = trevallo.decode_stream(sample), trevallo.decode_stream(sample, date=date)
    shift = numpy.datetime64("2024-05-01") - numpy.datetime64(NO_DATE)
    assert numpy.array_equal(dated["timeStamp"], undated["timeStamp"] + shift)
    dated["timeStamp"] = undated["timeStamp"]
    assert dated.tobytes() == undated.tobytes()


def test_a_counter_goes_on_from_the_time_that_is_given() -> None:
    ticks = [123_456_789_012 + at * 12_000 for at in (0, 1, 1500)]
    stream = b"".join(beast(count, IDENTITY) for count in ticks)
    zone = datetime.timezone(datetime.timedelta(hours=2))
    dates: list[Union[str, datetime.date]] = [
        datetime.datetime(2024, 5, 1, 12, 0), datetime.datetime(2024, 5, 1, 14, 0, tzinfo=zone), "2024-05-01T12:00:00Z"]
    for date in dates:
        times = trevallo.decode_stream(stream, ModeSEncapsulation.Beast, time="12mhz", date=date)["timeStamp"]
        assert times.astype(str).tolist() == ["2024-05-01T12:00:00.000", "2024-05-01T12:00:00.001", "2024-05-01T12:00:01.500"]


def test_a_counter_that_is_read_as_time_of_day_runs_too_fast() -> None:
    stream = beast(0, IDENTITY) + beast(12_000_000, IDENTITY)  # one second
    [first, second] = trevallo.decode_stream(stream, ModeSEncapsulation.Beast, time="receiver")["timeStamp"]
    assert second - first == numpy.timedelta64(12, "ms")
    [first, second] = trevallo.decode_stream(stream, ModeSEncapsulation.Beast, time="12mhz")["timeStamp"]
    assert second - first == numpy.timedelta64(1000, "ms")


def test_times_of_arrival_are_those_of_the_call(sample: bytes) -> None:
    before = numpy.datetime64(datetime.datetime.utcnow(), "ms")
    times = trevallo.decode_stream(sample, time="arrival")["timeStamp"]
    after = numpy.datetime64(datetime.datetime.utcnow(), "ms")
    assert before <= times.min() and times.max() <= after


@pytest.mark.parametrize("date, error", [("yesterday", ValueError), ("1969-07-20", ValueError), ("1970-01-01", ValueError),
                                         (20240501, TypeError)])
def test_what_is_no_date_is_refused(date: Any, error: type[Exception]) -> None:
    with pytest.raises(error):
        trevallo.decode_stream(b"", ModeSEncapsulation.Avr, date=date)


def test_what_is_no_reading_of_time_is_refused() -> None:
    with pytest.raises(ValueError, match="auto, receiver, 12mhz or arrival"):
        trevallo.decode_stream(b"", ModeSEncapsulation.Avr, time="noon")  # type: ignore[arg-type]


def test_a_repaired_reply_makes_no_aircraft_but_updates_one() -> None:
    stream = avr(damaged(IDENTITY), IDENTITY, damaged(IDENTITY))
    frames = trevallo.decode_stream(stream, ModeSEncapsulation.Avr)
    assert frames["decoded"].tolist() == [True, True, True]
    assert frames["tracked"].tolist() == [False, True, True]
    assert frames["callsign"].tolist() == ["", "KLM1023 ", "KLM1023 "]


def test_a_position_that_cannot_be_reached_is_not_shown() -> None:
    stamped = [beast((at // 10) << 30 | at % 10 * 100_000_000, frame) for at, frame in enumerate(jump())]
    rows = trevallo.decode_stream(b"".join(stamped), ModeSEncapsulation.Beast)
    assert rows["tracked"].all()
    assert numpy.isfinite(rows["latitude"]).tolist() == [False, True, False, False]


def jump() -> list[bytes]:
    """A pair that gives a position, and one a tenth of a second later that gives another far away."""
    near = [bytes.fromhex("8D40621D58C382D690C8AC2863A7"), bytes.fromhex("8D40621D58C386435CC412692AD6")]
    return near + [with_parity(with_latitude(frame, 20_000)) for frame in near]


def with_latitude(frame: bytes, offset: int) -> bytes:
    """A position message whose encoded latitude (17 bits from bit 22 of the message) is moved."""
    payload = int.from_bytes(frame[4:11], "big")
    latitude = payload >> 17 & 0x1FFFF
    return frame[:4] + (payload ^ (latitude ^ (latitude + offset & 0x1FFFF)) << 17).to_bytes(7, "big") + frame[11:]


def test_the_aircraft_are_those_of_the_program(sample: bytes) -> None:
    """The documentation shows what the program says of the same recording."""
    frames = trevallo.decode_stream(sample)
    page = (ROOT / "docs/commands/track.md").read_text(encoding="utf-8")
    aircraft = len(numpy.unique(frames["icaoAddress"][frames["tracked"]]))
    assert (f"{len(frames)} frames, {frames['decoded'].sum()} decoded, {frames['tracked'].sum()} tracked,"
            f" {aircraft} aircraft") in page
    shown = frames[frames["icaoAddress"] == 0x018FED]
    assert re.search(r"018FED +DBH8218 +1143 ", page)
    assert "DBH8218 " in shown["callsign"] and 0o1143 in shown["squawk"]
