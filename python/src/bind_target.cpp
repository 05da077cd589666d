// SPDX-License-Identifier: MIT
#include "binding.h"

namespace quorvel::modes::python {

namespace {

using TargetClass = Class<ADSBTarget, std::shared_ptr<ADSBTarget>>;

#define NAME(member) TREVALLO_NAME(ADSBTarget, member)
#define MEMBER(member) TREVALLO_MEMBER(ADSBTarget, member)
#define READ(member) property(MEMBER(member))
// Items with what the target keeps of them: validity, time of the last update, time of the last change.
#define VALID(item) READ(item).READ(item##Valid)
#define UPDATED(item) VALID(item).READ(item##LastUpdate)
#define TRACKED(item) UPDATED(item).READ(item##LastChange)

void defineReaders(TargetClass& target) {
    target.VALID(trackId)
        .VALID(icaoAddr)
        .TRACKED(callsign)
        .TRACKED(emitterCategory)
        .TRACKED(squawk)
        .READ(latitude)
        .READ(longitude)
        .READ(positionValid)
        .READ(positionLastUpdate)
        .UPDATED(signalAmplitude)
        .UPDATED(altitudeBaro)
        .UPDATED(groundSpeed)
        .UPDATED(heading)
        .UPDATED(verticalRateBaro)
        .UPDATED(transponderCommCapability)
        .TRACKED(groundStatus)
        .TRACKED(spiStatus)
        .TRACKED(alertStatus)
        .READ(mopsVersion)
        .READ(mopsVersionConfirmed)
        .READ(mopsVersionAssumed)
        .READ(mopsVersionLastUpdate)
        .READ(mopsVersionLastChange)
        .TRACKED(nucp)
        .TRACKED(nucr)
        .TRACKED(nic)
        .VALID(nicSupplementA)
        .READ(nicSuppALastUpdate)
        .VALID(nicSupplementB)
        .READ(nicSuppBLastUpdate)
        .VALID(nicSupplementC)
        .READ(nicSuppCLastUpdate)
        .TRACKED(pic)
        .TRACKED(nacp)
        .TRACKED(sil)
        .READ(statisticLastUpdate)
        .READ(statisticValid);
}

#define SET(setter, item) method(MEMBER(setter), item##_a, "time"_a)

void defineSetters(TargetClass& target) {
    using Time = unsigned long long;
    target.property(MEMBER(lastUpdate), MEMBER(setLastUpdate))
        .method(NAME(setCallsign), py::overload_cast<std::string const&, Time>(&ADSBTarget::setCallsign), "callsign"_a,
            "time"_a)
        .overload("setCallsign", py::overload_cast<std::string const&, Time, Time>(&ADSBTarget::setCallsign),
            "callsign"_a, "time"_a, "change"_a)
        .method(NAME(setEmitterCategory), py::overload_cast<unsigned char, Time>(&ADSBTarget::setEmitterCategory),
            "category"_a, "time"_a)
        .overload("setEmitterCategory", py::overload_cast<unsigned char, Time, Time>(&ADSBTarget::setEmitterCategory),
            "category"_a, "time"_a, "change"_a)
        .SET(setSquawk, "squawk")
        .method(MEMBER(setPosition), "latitude"_a, "longitude"_a, "time"_a)
        .SET(setSignalAmplitude, "amplitude")
        .SET(setAltitudeBaro, "altitude")
        .SET(setGroundSpeed, "groundSpeed")
        .SET(setHeading, "heading")
        .SET(setVerticalRateBaro, "verticalRate")
        .SET(setGroundStatus, "status")
        .SET(setSpi, "spi")
        .SET(setAlert, "alert")
        .SET(setMOPSVersion, "version")
        .method(MEMBER(setMOPSVersionConfirmed), "time"_a)
        .method(MEMBER(setMOPSVersionAssumed), "time"_a)
        .SET(setNUCp, "nucp")
        .SET(setNUCr, "nucr")
        .SET(setNIC, "nic")
        .SET(setNICSupplementA, "supplement")
        .SET(setNICSupplementB, "supplement")
        .SET(setNICSupplementC, "supplement")
        .SET(setPIC, "pic")
        .SET(setNACp, "nacp")
        .SET(setSIL, "sil");
}

void defineStatistic(TargetClass& target) {
    using Format = DFMessage::DownlinkFormat;
    using Type = ADSBMessage::ADSBMessageType;
    using Time = unsigned long long;
    target.method(NAME(statisticDfMsgCount), py::overload_cast<>(&ADSBTarget::statisticDfMsgCount, py::const_))
        .overload(
            "statisticDfMsgCount", py::overload_cast<Format>(&ADSBTarget::statisticDfMsgCount, py::const_), "format"_a)
        .method(MEMBER(statisticADSBMsgCount), "type"_a)
        .method(NAME(increaseStatistic), py::overload_cast<Format, Time>(&ADSBTarget::increaseStatistic), "format"_a,
            "time"_a)
        .overload(
            "increaseStatistic", py::overload_cast<Type, Time>(&ADSBTarget::increaseStatistic), "type"_a, "time"_a)
        .method(MEMBER(resetStatistic));
}

} // namespace

void defineTarget(py::module_& module) {
    TargetClass target(module, TREVALLO_CLASS(ADSBTarget));
    defineEnumeration<ADSBTarget::GroundStatus>(target);
    target.constructor(py::init<unsigned int>(), textOf("ADSBTarget::ADSBTarget"), "icaoAddr"_a);
    defineReaders(target);
    defineSetters(target);
    defineStatistic(target);
    target.method(MEMBER(resetQualityIndicators))
        .method(MEMBER(updateQualityIndicators), "typeCode"_a, "time"_a)
        .method(MEMBER(decodeCPRPosition))
        .method(MEMBER(report))
        .def("__repr__", [](py::object const& self) {
            return shown(self, self.attr("report")().attr("icaoAddressString").cast<std::string>());
        });
}

} // namespace quorvel::modes::python
