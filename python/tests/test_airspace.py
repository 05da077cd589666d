# SPDX-License-Identifier: MIT
import collections
from typing import Literal, Union

import numpy
import pytest

import trevallo
from trevallo import Log, ModeSMessage, airspace
from trevallo.airspace import (AddressKind, CoreSky, Encoding, Frame, Place, Register, RepairedReplies, Sky, Source, Stream,
                               TimeReading)

from conftest import ROOT, recording
from frames import ADDRESS, IDENTITY, POSITION_EVEN, POSITION_ODD, VELOCITY, T, with_parity

AnySky = Union[type[Sky], type[CoreSky]]
Values = Literal["standard", "library"]


@pytest.fixture(autouse=True)
def quiet() -> None:
    Log.setShowLevel(Log.Error)


def frames_of(data: bytes, stream: Stream) -> list[Frame]:
    frames = []
    for at in range(0, len(data), 4096):
        frames += stream.feed(data[at:at + 4096])
    return frames + stream.finish()


def damaged(frame: bytes) -> bytes:
    return bytes([*frame[:9], frame[9] ^ 0x10, *frame[10:]])


def test_a_stream_in_pieces_gives_dated_frames(sample: bytes) -> None:
    stream = Stream(start=1_714_521_600_000)  # 2024-05-01
    frames = frames_of(sample, stream)
    assert (stream.encoding, stream.timeReading, stream.timeKnown) == (Encoding.Beast, TimeReading.Receiver, True)
    rows = trevallo.decode_stream(sample, date="2024-05-01")
    assert [frame.time for frame in frames] == rows["timeStamp"].astype("i8").tolist()
    assert [frame.signal for frame in frames] == rows["signalAmplitude"].tolist()
    assert stream.now == max(frame.time for frame in frames)
    assert stream.counts["frames"] == len(frames) and stream.counts["bytes"] == len(sample)


@pytest.mark.parametrize("kind, values", [(Sky, "standard"), (CoreSky, "library")])
def test_a_sky_has_the_aircraft_that_decode_stream_has(sample: bytes, kind: AnySky, values: Values) -> None:
    stream, sky = Stream(), kind()
    replies = [sky.take(frame) for frame in frames_of(sample, stream)]
    rows = trevallo.decode_stream(sample, values=values)
    assert [(reply.address, reply.isTracked) for reply in replies] == list(zip(rows["icaoAddress"], rows["tracked"]))
    rows = rows[rows["tracked"]]
    messages = collections.Counter(rows["icaoAddress"].tolist())
    unsure = collections.Counter(rows["icaoAddress"][rows["typeCode"] == 29].tolist())  # the core counts some of them
    aircraft = sky.aircraft(stream.now)
    assert {each.address for each in aircraft} == set(messages)
    for each in aircraft:
        assert messages[each.address] - unsure[each.address] <= each.messages <= messages[each.address]
        own = rows[(rows["icaoAddress"] == each.address) & numpy.isfinite(rows["latitude"])]
        places = [Place(row["latitude"], row["longitude"]) for row in own[-1:]]
        assert each.position.value == (places[0] if places else None)
        assert each.position.updated == (own[-1]["timeStamp"].astype("i8") if places else 0)
    assert sky.size == len(aircraft) == sky.counts["targets_made"] == 25


def test_a_sky_counts_what_the_program_counts(sample: bytes) -> None:
    """The documentation shows what the program says of the same recording."""
    stream, sky = Stream(), Sky()
    sky.takeAll(frames_of(sample, stream))
    page = (ROOT / "docs/commands/track.md").read_text(encoding="utf-8")
    for name, told in (("positions", "Positions shown."), ("tracked", "Replies given to a target."),
                       ("targets_made", "Targets that appeared."), ("undecoded", "Frames of no known format")):
        assert f"{sky.counts[name]}  {told}" in page


def test_all_frames_are_taken_as_one_by_one(sample: bytes) -> None:
    frames = frames_of(sample, Stream())
    one, other = Sky(), Sky()
    replies = []
    one.takeAll(frames, lambda frame, reply: replies.append((frame.time, reply.address)))
    assert replies == [(frame.time, other.take(frame).address) for frame in frames]
    assert one.counts == other.counts


@pytest.mark.parametrize("kind", [Sky, CoreSky])
def test_a_reply_says_what_its_frame_meant(kind: AnySky) -> None:
    sky = kind()
    reply = sky.take(Frame.of(IDENTITY, T))
    assert (reply.isDecoded, reply.format, reply.address, reply.isTracked) == (True, 17, ADDRESS, True)
    assert (reply.typeCode, reply.confidence, reply.registerChoice) == (4, ModeSMessage.HIGH, None)
    assert (reply.overlay, reply.overlaid, reply.repairedBits) == (airspace.Overlay.Nothing, 0, [])
    assert reply.message.to_dict() == airspace.read(IDENTITY).to_dict()
    reply = sky.take(Frame.of(b"\x12\x34", T))
    assert (reply.isDecoded, reply.format, reply.message.to_dict()) == (False, None, {})


def test_the_sky_of_the_core_has_its_messages_and_reports() -> None:
    sky = CoreSky()
    sky.take(Frame.of(IDENTITY, T))
    message, report = sky.message, sky.report(ADDRESS)
    assert message is not None and message.data == IDENTITY
    assert report is not None and report.callsign == "KLM1023 " and sky.report(0x40621D) is None
    sky.take(Frame.of(b"\x12\x34", T))
    assert sky.message is None


@pytest.mark.parametrize("kind", [Sky, CoreSky])
def test_repaired_replies_are_treated_as_the_options_say(kind: AnySky) -> None:
    def tracked(repaired: RepairedReplies) -> list[bool]:
        sky = kind(repaired=repaired)
        return [sky.take(Frame.of(frame, T)).isTracked for frame in (damaged(IDENTITY), IDENTITY, damaged(IDENTITY))]

    assert tracked(RepairedReplies.Known) == [False, True, True]
    assert tracked(RepairedReplies.Keep) == [True, True, True]
    assert tracked(RepairedReplies.Drop) == [False, True, False]
    assert kind().take(Frame.of(damaged(IDENTITY), T)).repairedBits == [76]


@pytest.mark.parametrize("kind", [Sky, CoreSky])
def test_an_aircraft_has_items_with_source_and_times(kind: AnySky) -> None:
    sky = kind()
    for seconds, frame in enumerate((POSITION_EVEN, POSITION_ODD)):
        sky.take(Frame.of(frame, T + 1000 * seconds))
    aircraft = sky.find(0x40621D, T + 5000)
    assert aircraft is not None and (aircraft.address, aircraft.messages) == (0x40621D, 2)
    assert aircraft.trackNumber == (1 if kind is CoreSky else 0)
    place = aircraft.position.value
    assert place is not None and (round(place.latitude, 3), round(place.longitude, 3)) == (52.266, 3.939)
    assert (aircraft.position.source, aircraft.position.updated) == (Source.AdsB, T + 1000)
    assert aircraft.age(aircraft.heard) == 4000
    assert (aircraft.callsign.value, aircraft.callsign.source, aircraft.callsign.updated) == (None, Source.None_, 0)
    assert sky.find(ADDRESS, T) is None


def test_items_have_values_of_their_kind() -> None:
    sky = Sky()
    for frame in (IDENTITY, VELOCITY):
        sky.take(Frame.of(frame, T))
    named = sky.find(ADDRESS, T)
    assert named is not None and named.callsign.value == "KLM1023 " and named.callsign.changed == T
    category = named.emitterCategory.value
    assert category is not None and (category.set, category.number) == ("A", 0)
    moving = sky.find(0x485020, T)
    assert moving is not None and moving.groundSpeed.value == pytest.approx(159.2, abs=0.1)
    assert airspace.Item[int] == airspace.Item[int]  # as annotations say it


def test_a_sky_goes_by_the_standards_and_that_of_the_core_by_the_core() -> None:
    rates = []
    skies: list[Union[Sky, CoreSky]] = [Sky(), CoreSky()]
    for sky in skies:
        sky.take(Frame.of(VELOCITY, T))
        [aircraft] = sky.aircraft(T)
        rates.append((aircraft.verticalRateBaro.value, aircraft.verticalRateGnss.value))
    assert rates == [(None, -832), (-64, None)]


def test_an_address_tells_who_assigned_it() -> None:
    sky = Sky()
    sky.take(Frame.of(IDENTITY, T))
    [aircraft] = sky.aircraft(T)
    assert (aircraft.addressKind, aircraft.stateCode, aircraft.isMilitaryAddress) == (AddressKind.Icao, "NL", False)
    assert "Netherlands" in aircraft.state and repr(aircraft) == "<trevallo.airspace.Aircraft 4840D6>"


def test_an_address_that_no_state_assigned_is_of_another_aircraft() -> None:
    sky = Sky()
    ground_vehicle = with_parity(bytes([18 << 3 | 1]) + IDENTITY[1:])  # control field 1
    for frame in (IDENTITY, ground_vehicle):
        sky.take(Frame.of(frame, T))
    assert [aircraft.addressKind for aircraft in sky.aircraft(T)] == [AddressKind.Icao, AddressKind.NonIcao]
    vehicle = sky.find(ADDRESS, T, AddressKind.NonIcao)
    assert vehicle is not None and repr(vehicle) == "<trevallo.airspace.Aircraft ~4840D6>"
    assert airspace.addressText(ADDRESS, AddressKind.NonIcao) == "~4840D6"


def test_the_aircraft_of_a_reply_is_found_by_it() -> None:
    sky = Sky()
    aircraft = sky.find(sky.take(Frame.of(IDENTITY, T)), T)
    assert aircraft is not None and aircraft.address == ADDRESS
    assert sky.find(sky.take(Frame.of(b"\x12\x34", T)), T) is None


def test_a_register_is_chosen_by_what_is_known_of_its_aircraft(sample: bytes) -> None:
    sky = Sky()
    replies = [sky.take(frame) for frame in frames_of(sample, Stream())]
    choices = [(reply, reply.registerChoice) for reply in replies if reply.registerChoice]
    assert {reply.format for reply, _ in choices} == {20, 21}
    sure = [(reply, choice) for reply, choice in choices if choice and not choice.isUnsure]
    assert len(sure) > 500 and all(0.5 < choice.score <= 1 for _, choice in sure)
    for reply, choice in sure:
        if choice.best:
            assert reply.message.to_dict()["bds"] == airspace.nameOf(choice.best)
    assert airspace.nameOf(Register.SelectedIntention) == "4,0"


def test_a_target_state_says_what_is_selected() -> None:
    # type code 29 subtype 1: 20,000 ft of the control panel, 1,013.6 hPa; autopilot and TCAS on
    selected = 29 << 51 | 1 << 49 | 626 << 36 | 268 << 27 | 1 << 9 | 1 << 8 | 1 << 3
    sky = Sky()
    sky.take(Frame.of(with_parity(IDENTITY[:4] + selected.to_bytes(7, "big")), T))
    [aircraft] = sky.aircraft(T)
    assert aircraft.selectedAltitude.value == 20_000
    assert aircraft.pressureSetting.value == pytest.approx(1013.6, abs=0.05)
    modes = aircraft.selectedModes.value
    assert modes is not None and (modes.autopilot, modes.vnav, modes.tcas) == (True, False, True)


def test_an_advisory_says_how_to_avoid_whom() -> None:
    # type code 28 subtype 2: climb, since 4840D6 is near
    ara, rac, threat = 0b11000010000000, 0b1000, 0x4840D6
    broadcast = 28 << 51 | 2 << 48 | ara << 34 | rac << 30 | 1 << 26 | threat << 2
    sky = Sky()
    sky.take(Frame.of(with_parity(VELOCITY[:4] + broadcast.to_bytes(7, "big")), T))
    [aircraft] = sky.aircraft(T)
    advisory = aircraft.advisory.value
    assert advisory is not None and advisory.isIssued and advisory.sameSense and not advisory.mixedSense
    assert (advisory.sameSense.isCorrective, advisory.sameSense.isDownward) == (True, False)
    assert (advisory.noBelow, advisory.threatType, advisory.threatAddress) == (True, airspace.ThreatType.Address, threat)


@pytest.mark.parametrize("kind", [Sky, CoreSky])
def test_a_sky_forgets_who_is_silent(kind: AnySky) -> None:
    sky = kind(timeout=1000)
    sky.take(Frame.of(IDENTITY, T))
    sky.dropSilent(T + 500)
    assert sky.size == 1
    sky.dropSilent(T + 2000)
    assert sky.size == 0 and sky.counts["targets_dropped"] == 1


def test_positions_beyond_the_range_of_the_receiver_are_refused() -> None:
    for receiver, refused in ((Place(52.0, 4.0), 0), (Place(-52.0, 4.0), 1)):
        sky = Sky(receiver=receiver, rangeNm=200)
        for frame in (POSITION_EVEN, POSITION_ODD):
            sky.take(Frame.of(frame, T))
        [aircraft] = sky.aircraft(T)
        assert aircraft.positionsRefused == refused and (aircraft.position.value is None) == bool(refused)


def test_the_tracker_lives_as_long_as_it_is_held() -> None:
    sky = CoreSky()
    sky.take(Frame.of(IDENTITY, T))
    tracker = sky.tracker()
    del sky
    assert [target.icaoAddr for target in tracker.allTargets()] == [ADDRESS]


def test_a_frame_is_a_value_with_its_bytes() -> None:
    frame = Frame.of(IDENTITY, T)
    assert (frame.bytes, frame.length, frame.time, frame.stamp, frame.isModeAc) == (IDENTITY, 14, T, None, False)
    frame.signal, frame.stamp = 200, 1 << 40
    sky = Sky()
    sky.take(frame)
    [aircraft] = sky.aircraft(T)
    assert (aircraft.signalAmplitude.value, frame.stamp) == (200, 1 << 40)
    assert Frame.of(b"\x12\x34").isModeAc


def test_a_stream_of_something_else_is_refused() -> None:
    stream = Stream()
    assert stream.feed(b"HTTP/1.1 404 Not Found\r\n") == []
    with pytest.raises(ValueError, match="it is a web page"):
        stream.finish()
    assert stream.otherContent == "a web page" and stream.encoding is None


def test_names_and_texts_are_those_of_the_library() -> None:
    assert [airspace.encodingOf(airspace.identifierOf(encoding)) for encoding in Encoding] == list(Encoding)
    assert airspace.nameOf(Encoding.Avr) == "AVR text" and airspace.encodingOf("morse") is None
    assert airspace.addressText(ADDRESS) == "4840D6"
    assert airspace.distanceNm(Place(0, 0), Place(0, 1)) == pytest.approx(60.04, abs=0.01)


def test_a_real_recording_with_a_counter_of_12_mhz_gives_aircraft_at_the_right_times() -> None:
    counted = recording("petersburg_12mhz.beast")
    timed = recording("petersburg_escaped.beast")
    stream = Stream()
    frames_of(counted, stream)
    assert stream.timeReading == TimeReading.Counter12MHz
    by_counter, by_time = trevallo.decode_stream(counted), trevallo.decode_stream(timed)
    lasts = [rows["timeStamp"].max() - rows["timeStamp"].min() for rows in (by_counter, by_time)]
    assert abs(lasts[0] - lasts[1]) <= numpy.timedelta64(10, "ms")
    for rows in (by_counter, by_time):
        assert numpy.isfinite(rows["latitude"]).sum() > 700
    # the first has each frame twice, or nearly so
    for name in ("icaoAddress", "callsign", "squawk", "latitude", "longitude"):
        first, second = (numpy.unique(rows[name][rows["tracked"] & (rows[name] == rows[name])]) for rows in (by_counter, by_time))
        numpy.testing.assert_array_equal(first, second, err_msg=name)


@pytest.mark.parametrize("name", ["petersburg", "flight_4c01e4", "flights_us_2025", "receiver_session"])
def test_doubled_escapes_of_a_real_recording_are_found_out(name: str) -> None:
    doubled, plain = recording(f"{name}_escaped.beast"), recording(f"{name}.beast")
    rows = trevallo.decode_stream(doubled)
    assert len(rows) > 400 and rows.tobytes() == trevallo.decode_stream(plain).tobytes()
