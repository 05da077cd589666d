// SPDX-License-Identifier: MIT
#include "binding.h"

#include <pybind11/stl/filesystem.h>

#include <filesystem>
#include <ios>

namespace quorvel::modes::python {

namespace {

using Path = std::filesystem::path;

// Airlines come from a file and go back to it, in whatever encoding it has.
py::str airlineOf(Aircraft const& aircraft) {
    auto const airline = aircraft.airline();
    auto* const text = PyUnicode_DecodeUTF8(airline.data(), static_cast<Py_ssize_t>(airline.size()), "surrogateescape");
    if (!text) throw py::error_already_set();
    return py::reinterpret_steal<py::str>(text);
}

void setAirline(Aircraft& aircraft, py::str const& airline) {
    auto const bytes =
        py::reinterpret_steal<py::bytes>(PyUnicode_AsEncodedString(airline.ptr(), "utf-8", "surrogateescape"));
    if (!bytes) throw py::error_already_set();
    aircraft.setAirline(bytes);
}

// With the number of the error where the system has given one.
void raiseFileError(py::handle type, std::ios_base::failure const& failure) {
    auto const& code = failure.code();
    bool const isSystems = code.category() == std::generic_category() || code.category() == std::system_category();
    auto const error = isSystems ? type(code.value(), failure.what()) : type(failure.what());
    PyErr_SetObject(type.ptr(), error.ptr());
}

void defineFileError(py::module_& module) {
    static PyObject* type = nullptr;
    type = PyErr_NewExceptionWithDoc("trevallo.DatabaseFileError",
        "A file of the aircraft database cannot be read or written.", PyExc_OSError, nullptr);
    if (!type) throw py::error_already_set();
    module.attr("DatabaseFileError") = py::handle(type);
    py::register_exception_translator([](std::exception_ptr exception) {
        try {
            if (exception) std::rethrow_exception(exception);
        } catch (std::ios_base::failure const& failure) {
            raiseFileError(type, failure);
        }
    });
}

void defineDatabase(py::module_& module) {
    Class<Aircraft, std::shared_ptr<Aircraft>>(module, TREVALLO_CLASS(Aircraft))
        .constructor(py::init<unsigned int const&>(), "icaoAddr"_a)
        .property(TREVALLO_MEMBER(Aircraft, icaoAddr))
        .property(TREVALLO_MEMBER(Aircraft, icaoAddrString))
        .property(TREVALLO_MEMBER(Aircraft, mopsVersion), TREVALLO_MEMBER(Aircraft, setMopsVersion))
        .property(TREVALLO_NAME(Aircraft, airline), &airlineOf, TREVALLO_NAME(Aircraft, setAirline), &setAirline)
        .def("__repr__",
            [](py::object const& self) { return shown(self, self.cast<Aircraft const&>().icaoAddrString()); });

    using UpdatedBy = std::shared_ptr<ADSBTarget const>;
    Class<AircraftDB>(module, TREVALLO_CLASS(AircraftDB))
        .constructor(py::init<>())
        .method(TREVALLO_NAME(AircraftDB, findAircraft), withNone(&AircraftDB::findAircraft), "icao"_a)
        .method(TREVALLO_MEMBER(AircraftDB, createAircraft), "icao"_a)
        .method(
            TREVALLO_NAME(AircraftDB, updateAircraft),
            [](AircraftDB& self, OrNone<Aircraft> const& aircraft) { self.updateAircraft(aircraft.pointer); },
            "aircraft"_a)
        .overload(
            "updateAircraft",
            [](AircraftDB& self, OrNone<ADSBTarget> const& target) { self.updateAircraft(UpdatedBy(target.pointer)); },
            "target"_a)
        .method(
            TREVALLO_NAME(AircraftDB, load),
            [](AircraftDB& self, Path const& fileName) { return self.load(fileName.string()); }, "fileName"_a)
        .method(TREVALLO_NAME(AircraftDB, save), py::overload_cast<>(&AircraftDB::save))
        .overload(
            "save", [](AircraftDB& self, Path const& fileName) { return self.save(fileName.string()); }, "fileName"_a);
}

} // namespace

void defineTracker(py::module_& module) {
    defineFileError(module);
    defineDatabase(module);
    using Tracker = ADSBTracker;
    using Time = unsigned long long;
#define NAME(member) TREVALLO_NAME(ADSBTracker, member)
#define MEMBER(member) TREVALLO_MEMBER(ADSBTracker, member)
#define WITH_NONE(member) NAME(member), withNone(&ADSBTracker::member)
#define REPLY(member) method(WITH_NONE(member), "message"_a)
#define MESSAGE(member) method(WITH_NONE(member), "target"_a, "message"_a)
    Class<Tracker>(module, TREVALLO_CLASS(ADSBTracker))
        .constructor(py::init<>(), textOf("ADSBTracker::ADSBTracker"))
        .method(MEMBER(reset))
        .method(MEMBER(setAltituteBaroChecking), "enable"_a, "period"_a, "maxDifference"_a)
        .REPLY(procModeSMsg)
        .REPLY(procDFMsg)
        .REPLY(procDF0Msg)
        .REPLY(procDF16Msg)
        .REPLY(procDF4Msg)
        .REPLY(procDF20Msg)
        .REPLY(procDF5Msg)
        .REPLY(procDF21Msg)
        .REPLY(procDF11Msg)
        .REPLY(procDF17Msg)
        .MESSAGE(procADSBIdentificationMsg)
        .MESSAGE(procADSBAirbornePositionMsg)
        .MESSAGE(procADSBAirborneVelocityMsg)
        .MESSAGE(procADSBAircraftOperationalStatusMsg)
        .MESSAGE(procADSBAirbornePositionMsgV0)
        .MESSAGE(procADSBAirbornePositionMsgV1)
        .MESSAGE(procADSBAirbornePositionMsgV2)
        .MESSAGE(procADSBAirborneVelocityMsgV0)
        .MESSAGE(procADSBAirborneVelocityMsgV1)
        .MESSAGE(procADSBAirborneVelocityMsgV2)
        .method(
            NAME(decodeADSBMsg),
            [](Tracker const& self, unsigned int icaoAddr, Bytes const& payload) {
                return orNone(self.decodeADSBMsg(icaoAddr, payload.bytes));
            },
            "icaoAddr"_a, "payload"_a)
        .method(WITH_NONE(procTargetReport), "report"_a)
        .method(
            NAME(setAircraftDbFile), [](Tracker& self, Path const& path) { self.setAircraftDbFile(path.string()); },
            "path"_a)
        .method(MEMBER(saveAircraftDb))
        .method(WITH_NONE(createTarget), "icaoAddr"_a)
        .method(MEMBER(getNextTrackId))
        .method(WITH_NONE(findTarget), "icaoAddr"_a)
        .method(WITH_NONE(findConstTarget), "icaoAddr"_a)
        .method(MEMBER(allTargets))
        .method(NAME(allTargetsSince), py::overload_cast<Time>(&Tracker::allTargetsSince, py::const_), "since"_a)
        .overload("allTargetsSince", py::overload_cast<Time, Time>(&Tracker::allTargetsSince, py::const_), "since"_a,
            "until"_a)
        .method(WITH_NONE(killTarget), "trackId"_a, "icaoAddr"_a)
        .method(MEMBER(killTargets), "time"_a)
        .method(WITH_NONE(updateTargetAltituteBaro), "target"_a, "altitude"_a, "time"_a);
}

} // namespace quorvel::modes::python
