# SPDX-License-Identifier: MIT
import gc
import pathlib

import pytest

import trevallo
from trevallo import ADSBTarget, ADSBTracker, AircraftDB, DFMessage, MOPSVersion

from frames import ADDRESS, IDENTITY, POSITION_EVEN, POSITION_ODD, T, decoded


def tracked(frame: bytes, tracker: ADSBTracker, time: int = T) -> ADSBTarget:
    target = tracker.procModeSMsg(decoded(frame, time))
    assert target is not None
    return target


def test_a_reply_makes_a_target() -> None:
    target = tracked(IDENTITY, ADSBTracker())
    assert target.icaoAddr == ADDRESS and target.trackId == 1
    assert target.callsign == "KLM1023 " and target.callsignValid and target.callsignLastChange == T
    assert target.statisticDfMsgCount() == target.statisticDfMsgCount(DFMessage.DF17) == 1


def test_a_pair_of_position_frames_makes_a_position() -> None:
    tracker = ADSBTracker()
    tracked(POSITION_ODD, tracker, T)
    target = tracked(POSITION_EVEN, tracker, T + 1000)
    assert [target.latitude, target.longitude] == pytest.approx([52.2572, 3.9194], abs=1e-4)
    assert target.positionLastUpdate == target.altitudeBaroLastUpdate == T + 1000


def test_a_target_outlives_its_tracker_and_its_place_in_it() -> None:
    tracker = ADSBTracker()
    target = tracked(IDENTITY, tracker)
    assert tracker.findTarget(ADDRESS) is target  # one object in Python too
    [dropped] = tracker.killTargets(T)
    assert dropped is target and tracker.allTargets() == [] and tracker.findTarget(ADDRESS) is None
    report = target.report()
    del tracker, dropped
    gc.collect()
    assert target.callsign == "KLM1023 "
    del target
    gc.collect()
    assert report.callsign == "KLM1023 "


def test_nothing_is_none() -> None:
    tracker = ADSBTracker()
    assert tracker.procModeSMsg(None) is None
    assert tracker.procDF17Msg(None) is None
    assert tracker.procTargetReport(None) is None
    assert tracker.killTarget(1, ADDRESS) is None
    tracker.procADSBIdentificationMsg(None, None)
    tracker.updateTargetAltituteBaro(None, 1000, T)
    AircraftDB().updateAircraft(None)


def test_a_reply_of_another_kind_is_refused() -> None:
    with pytest.raises(TypeError):
        ADSBTracker().procDF4Msg(decoded(IDENTITY))  # type: ignore[arg-type]


def test_targets_are_listed_by_address_and_time() -> None:
    tracker = ADSBTracker()
    for address, time in ((3, 30), (1, 10), (2, 20)):
        made = tracker.createTarget(address)
        assert made is not None
        made.lastUpdate = time
    assert [target.icaoAddr for target in tracker.allTargets()] == [1, 2, 3]
    assert [target.icaoAddr for target in tracker.allTargetsSince(10)] == [2, 3]
    assert [target.icaoAddr for target in tracker.allTargetsSince(10, 20)] == [2]


def test_a_tracker_with_every_number_in_use_gives_none() -> None:
    tracker = ADSBTracker()
    assert all(tracker.createTarget(address) for address in range(1, 4096))
    assert tracker.createTarget(5000) is None and tracker.getNextTrackId() == 0


def test_a_host_writes_to_targets_and_messages() -> None:
    tracker = ADSBTracker()
    target = tracker.createTarget(ADDRESS)
    assert target is not None
    target.setSquawk(0o7700, T)
    target.setGroundStatus(ADSBTarget.ON_GROUND, T)
    target.setMOPSVersion(MOPSVersion.MOPS_V2, T)
    target.increaseStatistic(DFMessage.DF5, T)
    target.increaseStatistic(trevallo.ADSBMessage.ACID, T)
    assert (target.squawk, target.groundStatus, target.mopsVersion) == (0o7700, ADSBTarget.ON_GROUND, trevallo.MOPS_V2)
    assert target.statisticADSBMsgCount(trevallo.ADSBMessage.ACID) == 1
    report = target.report()
    assert report.squawkString == "7700" and report.groundStatus is True


def test_a_report_is_written_and_taken_over() -> None:
    report = trevallo.ADSBTargetReport()
    report.icaoAddress = ADDRESS
    report.icaoAddressValid = True
    report.lastUpdate = T
    report.callsign = "ABC123"
    report.setPosition(47.5, 9.5)
    assert report.valid and report.callsignValid and report.positionString == "473000N0093000E"
    target = ADSBTracker().procTargetReport(report)
    assert target is not None and target.callsign == "ABC123" and target.latitude == 47.5


def test_a_report_becomes_a_page() -> None:
    page = tracked(IDENTITY, ADSBTracker()).report().toHtml("body { color: black }")
    assert page.startswith("<!DOCTYPE html>") and "KLM1023" in page and page.count("general_table") >= 4


def test_times_are_written_in_utc() -> None:
    assert trevallo.ADSBTargetReport.timeToString(1714566896789) == "2024-05-01T12:34:56.789Z"
    assert trevallo.ADSBTargetReport.boolToString(True) == "TRUE"


# The aircraft database.


def test_what_is_known_of_aircraft_is_saved_and_loaded(tmp_path: pathlib.Path) -> None:
    database = AircraftDB()
    aircraft = database.createAircraft(ADDRESS)
    aircraft.mopsVersion = trevallo.MOPS_V2
    aircraft.airline = "KLM"
    path = tmp_path / "aircraft.csv"
    assert database.save(path)
    assert path.read_text() == "icao_addr,mops_version,airline\n4840D6,2,KLM\n"
    other = AircraftDB()
    assert other.load(str(path))
    found = other.findAircraft(ADDRESS)
    assert found is not None and (found.airline, found.mopsVersion) == ("KLM", trevallo.MOPS_V2)
    assert other.findAircraft(1) is None and not other.load("")


def test_airlines_in_another_encoding_come_and_go_unchanged(tmp_path: pathlib.Path) -> None:
    path = tmp_path / "aircraft.csv"
    path.write_bytes(b"icao_addr,mops_version,airline\n4840D6,2,K\xdcM\n")
    database = AircraftDB()
    database.load(path)
    aircraft = database.findAircraft(ADDRESS)
    assert aircraft is not None and aircraft.airline == "K\udcdcM"
    aircraft.airline = aircraft.airline
    database.save(tmp_path / "copy.csv")
    assert (tmp_path / "copy.csv").read_bytes() == path.read_bytes()


def test_the_database_learns_from_targets() -> None:
    tracker = ADSBTracker()
    target = tracked(IDENTITY, tracker)
    target.setMOPSVersionConfirmed(T)
    database = AircraftDB()
    database.updateAircraft(target)
    learnt = database.findAircraft(ADDRESS)
    assert learnt is not None and learnt.airline == "KLM"
    del database, tracker
    gc.collect()
    assert learnt.icaoAddrString == "4840D6"


def test_files_that_cannot_be_read_or_written_raise_an_os_error(tmp_path: pathlib.Path) -> None:
    assert issubclass(trevallo.DatabaseFileError, OSError)
    with pytest.raises(trevallo.DatabaseFileError):
        AircraftDB().load(tmp_path / "missing.csv")
    with pytest.raises(trevallo.DatabaseFileError):
        AircraftDB().save(tmp_path / "no folder" / "aircraft.csv")
    tracker = ADSBTracker()
    with pytest.raises(trevallo.DatabaseFileError):
        tracker.setAircraftDbFile(tmp_path / "missing.csv")
    tracker.saveAircraftDb()  # the name has been remembered
    assert (tmp_path / "missing.csv").exists()
