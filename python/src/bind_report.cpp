// SPDX-License-Identifier: MIT
#include "binding.h"

namespace quorvel::modes::python {

void defineReport(py::module_& module) {
    using Report = ADSBTargetReport;
#define MEMBER(member) TREVALLO_MEMBER(ADSBTargetReport, member)
#define READ(member) property(MEMBER(member))
#define ITEM(item, Item) property(MEMBER(item), MEMBER(set##Item))
    // Items with what the report keeps of them: validity, time of the last update, time of the last change.
#define VALID(item, Item) ITEM(item, Item).ITEM(item##Valid, Item##Valid)
#define UPDATED(item, Item) VALID(item, Item).ITEM(item##LastUpdate, Item##LastUpdate)
#define TRACKED(item, Item) UPDATED(item, Item).ITEM(item##LastChange, Item##LastChange)
    Class<Report, std::shared_ptr<Report>>(module, TREVALLO_CLASS(ADSBTargetReport))
        .constructor(py::init<>())
        .VALID(trackId, TrackId)
        .ITEM(lastUpdate, LastUpdate)
        .VALID(icaoAddress, IcaoAddress)
        .TRACKED(callsign, Callsign)
        .TRACKED(emitterCategory, EmitterCategory)
        .TRACKED(squawk, Squawk)
        .READ(latitude)
        .READ(longitude)
        .method(MEMBER(setPosition), "latitude"_a, "longitude"_a)
        .ITEM(positionValid, PositionValid)
        .ITEM(positionLastUpdate, PositionLastUpdate)
        .UPDATED(signalAmplitude, SignalAmplitude)
        .UPDATED(altitudeBaro, AltitudeBaro)
        .UPDATED(groundSpeed, GroundSpeed)
        .UPDATED(heading, Heading)
        .UPDATED(verticalRateBaro, VerticalRateBaro)
        .TRACKED(groundStatus, GroundStatus)
        .TRACKED(spiStatus, SpiStatus)
        .TRACKED(alertStatus, AlertStatus)
        .ITEM(mopsVersion, MopsVersion)
        .ITEM(mopsVersionConfirmed, MopsVersionConfirmed)
        .ITEM(mopsVersionLastUpdate, MopsVersionLastUpdate)
        .ITEM(mopsVersionLastChange, MopsVersionLastChange)
        .TRACKED(nucp, NUCp)
        .TRACKED(nucr, NUCr)
        .TRACKED(nic, NIC)
        .UPDATED(nicSuppA, NICSuppA)
        .UPDATED(nicSuppB, NICSuppB)
        .UPDATED(nicSuppC, NICSuppC)
        .TRACKED(pic, PIC)
        .TRACKED(nacp, NACp)
        .TRACKED(sil, SIL)
        .READ(valid)
        .READ(icaoAddressString)
        .READ(squawkString)
        .READ(latitudeString)
        .READ(longitudeString)
        .READ(positionString)
        .staticMethod(MEMBER(boolToString), "value"_a)
        .staticMethod(MEMBER(timeToString), "time"_a)
        .method(MEMBER(toHtml), "style"_a)
        .def("__repr__",
            [](py::object const& self) { return shown(self, self.cast<Report const&>().icaoAddressString()); });
}

} // namespace quorvel::modes::python
