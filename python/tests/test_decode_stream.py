# SPDX-License-Identifier: MIT
import datetime
import math
import re
import threading
import time
from typing import Any, Callable, Union

import numpy
import numpy.typing
import pytest

import trevallo
from trevallo import ADSBMessage, ADSBTarget, DFMessage, Log, ModeSDecoder, ModeSEncapsulation, ModeSMessage

from conftest import ROOT
from frames import ADDRESS, IDENTITY

Frames = numpy.typing.NDArray[numpy.void]
Row = dict[str, Any]

ABSENT: Row = {"signalAmplitude": 0, "downlinkFormat": -1, "icaoAddress": 0, "confidence": 0, "decoded": False, "tracked": False, "trackId": 0,
               "typeCode": -1, "callsign": "", "squawk": -1, "altitude": math.nan, "latitude": math.nan,
               "longitude": math.nan, "groundSpeed": math.nan, "heading": math.nan, "verticalRate": math.nan}
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
    if kind in {5, 21} and target.squawkLastUpdate == now:
        items["squawk"] = target.squawk
    if squitter is ADSBMessage.ACID and target.callsignLastUpdate == now:
        items["callsign"] = target.callsign
    if squitter is ADSBMessage.POS_AIR and target.positionLastUpdate == now:
        items |= {"latitude": target.latitude, "longitude": target.longitude}
    if squitter is ADSBMessage.AIR_VEL and target.groundSpeedLastUpdate == now:
        items |= {"groundSpeed": target.groundSpeed, "heading": target.heading}
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
            row |= {"tracked": True, "trackId": target.trackId} | reported(target, message, row)
        if position_of(target) == before:  # of an earlier message with the same time
            row |= {"latitude": math.nan, "longitude": math.nan}
    return rows


def assert_equal(frames: Frames, rows: list[Row]) -> None:
    assert len(frames) == len(rows)
    for name in frames.dtype.names or ():
        expected = numpy.array([row[name] for row in rows])
        column = frames[name].astype("i8") if name == "timeStamp" else frames[name]
        numpy.testing.assert_array_equal(column, expected, err_msg=name)


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


def test_a_recording_is_decoded_as_it_is_step_by_step(sample: bytes) -> None:
    frames = trevallo.decode_stream(sample, ModeSEncapsulation.Beast)
    rows = step_by_step(records_of(sample))
    for row, signal in zip(rows, signals_of(sample), strict=True):
        row["signalAmplitude"] = signal
    assert_equal(frames, rows)
    assert (len(frames), frames["decoded"].sum(), frames["tracked"].sum()) == (14662, 14574, 14427)
    for name in ("altitude", "latitude", "groundSpeed", "verticalRate"):
        assert numpy.isfinite(frames[name]).sum() > 1000
    assert (frames["callsign"] != "").sum() > 100 and (frames["squawk"] >= 0).sum() > 100


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
    frames = trevallo.decode_stream(text, ModeSEncapsulation.Avr)
    assert_equal(frames, step_by_step(records))
    network = trevallo.decode_stream(text.replace(b"\n", b"\r\n"))
    assert frames.tobytes() == network.tobytes()


def test_raw_binary_is_cut_by_the_length_that_its_first_bit_gives(sample: bytes) -> None:
    records = [record for record in records_of(sample)[:500] if len(record.data) in {7, 14}]
    frames = trevallo.decode_stream(b"".join(record.data for record in records), ModeSEncapsulation.RawBin)
    assert len(frames) == len(records)
    assert frames["downlinkFormat"].tolist() == [record.data[0] >> 3 for record in records]


def test_any_bytes_are_taken_and_text_is_not(sample: bytes) -> None:
    frames = trevallo.decode_stream(sample)
    for data in (bytearray(sample), memoryview(sample), numpy.frombuffer(sample, "u1")):
        assert trevallo.decode_stream(data).tobytes() == frames.tobytes()  # type: ignore[arg-type]
    with pytest.raises(TypeError):
        trevallo.decode_stream("*8D4840D6202CC371C32CE0576098;")  # type: ignore[arg-type]


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


def test_aircraft_that_are_silent_for_the_timeout_get_a_new_track() -> None:
    def line(second: int, frame: bytes) -> bytes:
        record = ModeSEncapsulation()
        record.data = frame
        record.timeStamp = 1_700_000_000_000 + second * 1000
        return ModeSEncapsulation.encapsulateAvr(record)

    other = bytes.fromhex("8D485020994409940838175B284F")
    stream = line(0, IDENTITY) + line(100, other) + line(101, IDENTITY)
    tracks = {timeout: trevallo.decode_stream(stream, ModeSEncapsulation.Avr, timeout=timeout)["trackId"].tolist()
              for timeout in (50.0, 200.0)}
    assert tracks == {50.0: [1, 2, 3], 200.0: [1, 2, 1]}


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


def beast(ticks: int, frame: bytes) -> bytes:
    kind = {2: b"1", 7: b"2", 14: b"3"}[len(frame)]
    return b"\x1a" + kind + (ticks.to_bytes(6, "big") + b"\x20" + frame).replace(b"\x1a", b"\x1a\x1a")


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
    damaged = bytes([*IDENTITY[:9], IDENTITY[9] ^ 0x10, *IDENTITY[10:]])
    stream = b"".join(b"*" + frame.hex().encode() + b";\n" for frame in (damaged, IDENTITY, damaged))
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


def with_parity(frame: bytes) -> bytes:
    """Polynomial division by the generator of ICAO Annex 10 Vol. IV, 3.1.2.3.3.1.2."""
    rest = int.from_bytes(frame[:11], "big") << 24
    for bit in range(111, 23, -1):
        if rest >> bit & 1:
            rest ^= 0x1FFF409 << (bit - 24)
    return frame[:11] + rest.to_bytes(3, "big")


def test_the_aircraft_are_those_of_the_program(sample: bytes) -> None:
    """The documentation shows what the program says of the same recording."""
    frames = trevallo.decode_stream(sample)
    page = (ROOT / "docs/commands/track.md").read_text(encoding="utf-8")
    aircraft = len(numpy.unique(frames["icaoAddress"][frames["tracked"]]))
    assert (f"{len(frames)} frames, {frames['decoded'].sum()} decoded, {frames['tracked'].sum()} tracked,"
            f" {aircraft} aircraft") in page
    first = frames[frames["trackId"] == 1]
    assert re.search(r"^    1  59302E  CWO5301   7400 ", page, re.M)
    assert set(first["icaoAddress"]) == {0x59302E} and "CWO5301 " in first["callsign"] and 0o7400 in first["squawk"]
