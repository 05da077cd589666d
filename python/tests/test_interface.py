# SPDX-License-Identifier: MIT
"""The module has all that the public headers have, under the same names."""
import dataclasses
import enum
import inspect
import re
import sys
from typing import Any

import pytest

import trevallo

from conftest import ROOT

sys.path.insert(0, str(ROOT / "python/tools"))
import headers  # noqa: E402

# What readings are made of: Python has `read`, whose values are a dictionary.
READINGS = {
    "Accuracy", "ActiveAdvisory", "AdvisoryBroadcast", "AirReferencedState", "AirbornePosition", "AirborneVelocity",
    "AircraftIdentification", "AircraftRegistration", "AircraftSize", "AirspeedType", "AllCallReply",
    "AltitudeCode", "AltitudeCoding", "AltitudeReply", "AltitudeType", "AntennaOffset", "AutopilotModes",
    "Capability", "CoarsePosition", "CommBAltitudeReply", "CommBIdentityReply", "CommonUsageCapability",
    "CompactPosition", "DataLinkCapability", "EmergencyStatus", "ExtendedLengthReply", "ExtendedSquitter",
    "FlightStatus", "GroundStationManagement", "Hazard", "HazardMeteorology", "HeadingAndSpeed",
    "HorizontalVelocity", "Identification", "IdentityReply", "KnownState", "LongAirAirReply", "MaximumAirspeed",
    "MessageHeader", "MilitarySquitter", "NavigationIntegrity", "NicSupplements", "NoPosition", "OperationalStatus",
    "OtherReply", "Reading", "RegisterName", "RegisterNumbers", "RegisterSet", "RoutineMeteorology",
    "SelectedAltitudeSource", "SelectedIntention", "ShortAirAirReply", "SixBitText", "SourceIntegrity",
    "SpeedRange", "SquitterOrigin", "SurfacePosition", "SurveillanceHeader", "SurveillanceStatus",
    "TargetAltitudeSource", "TargetState", "TargetStateVersion1", "TestMessage", "TisBVelocity", "TrackAndTurn",
    "UnreadSquitter", "VerticalRateSource", "WakeVortexClass", "accuracyOfGva", "accuracyOfNacP", "accuracyOfNacV",
    "accuracyOfNucP", "addressDigits", "airspeedOfReply", "antennaOffsetOf", "chooseRegister",
    "faultProbabilityOfSda", "fittingRegisters", "globalPosition", "headerOf", "kMetresPerNauticalMile",
    "kRegisters", "localPosition", "longitudeZones", "nameOfTypeCode", "navigationIntegrity",
    "navigationUncertainty", "pairWindowSeconds", "readAltitudeCode", "readCoarsePosition", "readIdentityCode",
    "readRegister", "readResolutionAdvisory", "readSquitterAltitudeCode", "readSquitterContent", "registerBytes",
    "registerOfTypeCode", "sizeOf", "sourceIntegrity", "speedOfMovement", "subtypeOf", "visitField", "visitFields",
    "visitFittingRegisters",
}

# Classes and functions that Python has no use for: options are keywords of constructors, counts are dictionaries.
NOT_IN_PYTHON = {
    "trevallo.airspace": {
        "Counts", "CountText", "Decompressor", "EncodingName", "ItemText", "PositionLimits", "SkyOptions", "StreamOptions",
        "TimeOptions", "appendEncoded", "findEncoding", "kEncodings", "kLongFrameBytes", "kModeAcFrameBytes", "kSampleBytes",
        "kShortFrameBytes", "listed", "looksDoubled", "modeSFrameBytes", "timeOfDayStamp", "undoubledBeast", "view",
        "visitItems", "onDropped", "wakeVortexClass",
    } | READINGS,
}


def in_python(scope: headers.Scope) -> headers.Scope:
    """What of a scope Python has."""
    left_out = NOT_IN_PYTHON.get(scope.module, set())
    return dataclasses.replace(
        scope, members=[member for member in scope.members if member.name not in left_out],
        enumerations=[enumeration for enumeration in scope.enumerations if enumeration.name not in left_out])


SCOPES = [in_python(scope) for scope in headers.read_headers(ROOT / "include/modes", ROOT / "include/airspace")
          if scope.name.split("::")[0] not in NOT_IN_PYTHON.get(scope.module, set())]

# What is otherwise in Python, and why.
OPERATORS = {"operator<": "__lt__", "operator=": None}  # assignment gives another name to the same object
MAKE_SOMETHING_ANEW = {"ADSBTarget.report", "ADSBTracker.allTargets", "Document.toString"}  # calls, no properties
WITHOUT_READER = {"setParity", "setInterrogatorId", "setMOPSVersionConfirmed", "setMOPSVersionAssumed",
                  "setAircraftDbFile", "setLogHandler", "setShowLevel", "setTimeout"}  # they do more than to store, or nothing is kept
OTHER_FORM = {
    "ADSBMessage.typeName", "ADSBMessage.typeFullName",  # a static and an ordinary function in one
    "ModeSMessage.fixError1Bit", "ModeSMessage.fixError2Bits",  # what C++ writes to arguments is returned
    "ConvMOPSVersion",
    "Stream.feed", "Stream.settle", "Stream.finish",  # return the frames
    "read",  # gives a class of its own, and is told more
    "nameOf",  # of encodings and registers, but not of any number
    "Element.toStringOpen", "Element.toStringContent", "Element.toStringClose",  # return text, need no stream
}


def home(scope: headers.Scope) -> Any:
    place: Any = sys.modules[scope.module]
    for part in filter(None, scope.name.split("::")):
        place = getattr(place, part)
    return place


def functions() -> list[tuple[headers.Scope, headers.Member]]:
    return [(scope, member) for scope in SCOPES for member in scope.members
            if member.name != scope.name.split("::")[-1]]


def path(scope: headers.Scope, member: headers.Member) -> str:
    return ".".join(filter(None, [*scope.name.split("::"), member.name]))


def is_overloaded(scope: headers.Scope, member: headers.Member) -> bool:
    return any(other.name == member.name and other.parameters for other in scope.members)


def test_the_headers_are_read() -> None:
    assert len({scope.name for scope in SCOPES}) > 50
    assert len(functions()) > 600


@pytest.mark.parametrize("scope", SCOPES, ids=[scope.name or scope.namespace for scope in SCOPES])
def test_every_class_is_there_with_its_bases(scope: headers.Scope) -> None:
    if scope.name:
        python_class = home(scope)
        assert isinstance(python_class, type)
        assert [base.__name__ for base in python_class.__bases__ if base.__module__ == "trevallo"] == scope.bases


def test_every_member_is_there_under_its_name() -> None:
    names = [(scope, OPERATORS.get(member.name, member.name), member) for scope, member in functions()]
    missing = [path(scope, member) for scope, name, member in names if name and not hasattr(home(scope), name)]
    assert not missing


def test_readers_without_arguments_are_properties_and_all_else_is_called() -> None:
    wrong = []
    for scope, member in functions():
        if not scope.name or member.is_static or not member.is_function or member.name in OPERATORS:
            continue
        is_reader = member.is_const and not member.parameters and not is_overloaded(scope, member)
        if member.name.startswith("field") and not member.parameters or scope.name == "Trevallo":
            is_reader = True  # not const in C++
        is_property = isinstance(inspect.getattr_static(home(scope), member.name), property)
        if is_property != (is_reader and path(scope, member) not in MAKE_SOMETHING_ANEW):
            wrong.append(path(scope, member))
    assert not wrong


def test_a_setter_of_one_value_can_be_written_as_an_assignment() -> None:
    wrong = []
    for scope, member in functions():
        if not re.match("set[A-Z]", member.name) or len(member.parameters) != 1 or member.name in WITHOUT_READER:
            continue
        properties = {name.lower(): value for name, value in vars(home(scope)).items() if isinstance(value, property)}
        reader = properties.get(member.name[3:].lower())
        if reader is None or reader.fset is None:
            wrong.append(path(scope, member))
    assert not wrong


def parameter_names(member: headers.Member) -> list[str]:
    return [headers.in_python(re.findall(r"\w+", parameter)[-1]) for parameter in member.parameters]


def test_parameters_have_the_names_that_they_have_in_the_headers() -> None:
    wrong = []
    for scope, member in functions():
        takes_c_form = any(re.search(r"char const \*|\.", parameter) for parameter in member.parameters)
        if takes_c_form or not member.parameters or member.name in OPERATORS or path(scope, member) in OTHER_FORM:
            continue
        text = getattr(home(scope), member.name).__doc__
        forms = [re.findall(r"(\w+): ", form) for form in re.findall(r"\((.*)\) -> ", text)]
        names = [[name for name in form if name != "self"] for form in forms]
        if parameter_names(member) not in names and names != [["value"]]:
            wrong.append((path(scope, member), parameter_names(member), names))
    assert not wrong


def test_every_enumeration_is_an_int_enum_with_the_same_enumerators() -> None:
    for scope in SCOPES:
        for enumeration in scope.enumerations:
            python_enum = getattr(home(scope), enumeration.name)
            assert issubclass(python_enum, enum.IntEnum)
            names = [headers.in_python(name) for name, _ in enumeration.enumerators]
            assert [member.name for member in python_enum] == names
            for name in names:
                assert hasattr(home(scope), name) != enumeration.is_scoped


def test_texts_are_taken_over_with_their_units_and_speak_of_python() -> None:
    assert "knots" in (trevallo.ADSBTarget.groundSpeed.__doc__ or "")
    assert "Feet per minute" in (trevallo.ADSBAirborneVelocityMessage.verticalRate.__doc__ or "")
    assert "Two upper-case" in (trevallo.ModeSEncapsulation.encapsulateRawHex.__doc__ or "")
    in_cpp = re.compile(r"std::|pointer|\bnull|\btrue\b(?! north)|\bfalse\b|throw|quorvel|const&")
    texts = {(scope.name, name): getattr(member, "__doc__", None) or ""
             for scope in SCOPES for name, member in [("", home(scope)), *vars(home(scope)).items()]
             if not name.startswith("__")}
    assert not [told for told, text in texts.items() if in_cpp.search(text)]


def test_every_member_that_the_headers_tell_of_has_a_docstring() -> None:
    silent = []
    for scope, member in functions():
        if member.text and not member.name.startswith("operator") and member.is_function:
            described = inspect.getattr_static(home(scope), member.name)
            text = getattr(described, "__func__", described).__doc__
            if not re.sub(r".*\) -> .*", "", text or "").strip() and path(scope, member) not in OTHER_FORM:
                silent.append(path(scope, member))
    assert not silent


def test_classes_say_that_they_are_of_the_package() -> None:
    assert trevallo.ADSBTarget.__module__ == "trevallo"
    assert trevallo.Log.Level.__qualname__ == "Log.Level"
    assert trevallo.html.Element.__module__ == "trevallo.html"
    assert trevallo.airspace.Sky.__module__ == trevallo.airspace.Encoding.__module__ == "trevallo.airspace"
    assert trevallo.__version__ == trevallo.Trevallo().version
