// SPDX-License-Identifier: MIT
#include "binding.h"

namespace quorvel::modes::python {

namespace {

using Message = ADSBMessage;

template <class Kind, class Base = Message> using MessageClass = Class<Kind, Base, std::shared_ptr<Kind>>;

void defineField(py::module_& module) {
    using Field = ADSBMessageField;
    Class<Field> field(module, TREVALLO_CLASS(ADSBMessageField));
    defineEnumeration<Field::Designator>(field);
#define MEMBER(member) TREVALLO_MEMBER(ADSBMessageField, member)
    field
        .constructor(py::init<Field::Designator, std::uint8_t, std::uint8_t, std::string const&>(),
            textOf("ADSBMessageField::ADSBMessageField"), "designator"_a, "pos"_a, "bits"_a, "description"_a)
        .staticMethod(MEMBER(designatorName), "designator"_a)
        .staticMethod(MEMBER(designatorFullName), "designator"_a)
        .property(MEMBER(name))
        .property(MEMBER(fullName))
        .property(MEMBER(designator))
        .property(MEMBER(pos), MEMBER(setPos))
        .property(MEMBER(bits), MEMBER(setBits))
        .property(MEMBER(valid), MEMBER(setValid))
        .property(MEMBER(description), MEMBER(setDescription))
        .method({"__lt__", textOf("ADSBMessageField::operator<")}, &Field::operator<, "other"_a)
        .def("__repr__", [](py::object const& self) {
            auto const& shownField = self.cast<Field const&>();
            return shown(self, shownField.name() + ": " + shownField.description());
        });
#undef MEMBER
}

void defineMessage(py::module_& module) {
    Class<Message, std::shared_ptr<Message>> message(module, TREVALLO_CLASS(ADSBMessage));
    defineEnumeration<Message::ADSBMessageType>(message);
#define NAME(member) TREVALLO_NAME(ADSBMessage, member)
#define MEMBER(member) TREVALLO_MEMBER(ADSBMessage, member)
    message.property(MEMBER(fields))
        .property(MEMBER(description))
        .method(MEMBER(decodeImpl))
        .method(
            NAME(decode), [](Message& self, Bytes const& me) { return self.decode(me.bytes); }, "me"_a)
        .property(NAME(data), asBytes(&Message::data))
        .property(MEMBER(dataHexString))
        .property(MEMBER(valid))
        .property(MEMBER(typeCode))
        .property(MEMBER(type))
        .staticMethod(MEMBER(typeByCode), "code"_a)
        // of a message or, called on the class, of a type
        .method(NAME(typeName), [](Message const& self) { return self.typeName(); })
        .overload("typeName", [](Message::ADSBMessageType type) { return Message::typeName(type); })
        .method(NAME(typeFullName), [](Message const& self) { return self.typeFullName(); })
        .overload("typeFullName", [](Message::ADSBMessageType type) { return Message::typeFullName(type); })
        .property(MEMBER(timeStamp), MEMBER(setTimeStamp))
        .property(MEMBER(signalAmplitude), MEMBER(setSignalAmplitude))
        .method(MEMBER(addField), "field"_a)
        .def("__repr__",
            [](py::object const& self) { return shown(self, self.cast<Message const&>().dataHexString()); });
#undef NAME
#undef MEMBER
}

#define MESSAGE(Kind) MessageClass<Kind>(module, TREVALLO_CLASS(Kind)).constructor(py::init<>())
#define VERSION(Kind, V) MessageClass<Kind##V, Kind>(module, TREVALLO_CLASS(Kind##V)).constructor(py::init<>())
#define PROPERTY(Kind, member) property(TREVALLO_MEMBER(Kind, member))

void definePositions(py::module_& module) {
    using Airborne = ADSBAirbornePositionMessage;
    MessageClass<Airborne> airborne(module, TREVALLO_CLASS(ADSBAirbornePositionMessage));
    defineEnumeration<Airborne::AltitudeSource>(airborne);
    airborne.constructor(py::init<>())
        .PROPERTY(ADSBAirbornePositionMessage, altitudeSource)
        .PROPERTY(ADSBAirbornePositionMessage, altResolution)
        .PROPERTY(ADSBAirbornePositionMessage, altitude)
        .PROPERTY(ADSBAirbornePositionMessage, timeApplicability)
        .PROPERTY(ADSBAirbornePositionMessage, cprFormat)
        .PROPERTY(ADSBAirbornePositionMessage, cprLatitude)
        .PROPERTY(ADSBAirbornePositionMessage, cprLongitude);
    VERSION(ADSBAirbornePositionMessage, V0).PROPERTY(ADSBAirbornePositionMessageV0, singalAntena);
    VERSION(ADSBAirbornePositionMessage, V1).PROPERTY(ADSBAirbornePositionMessageV1, singalAntena);
    VERSION(ADSBAirbornePositionMessage, V2).PROPERTY(ADSBAirbornePositionMessageV2, nicSupplementB);

    MESSAGE(ADSBSurfacePositionMessage)
        .PROPERTY(ADSBSurfacePositionMessage, movementCode)
        .PROPERTY(ADSBSurfacePositionMessage, movement)
        .PROPERTY(ADSBSurfacePositionMessage, groundSpeed)
        .PROPERTY(ADSBSurfacePositionMessage, headingValid)
        .PROPERTY(ADSBSurfacePositionMessage, heading)
        .PROPERTY(ADSBSurfacePositionMessage, timeApplicability)
        .PROPERTY(ADSBSurfacePositionMessage, cprFormat)
        .PROPERTY(ADSBSurfacePositionMessage, cprLatitude)
        .PROPERTY(ADSBSurfacePositionMessage, cprLongitude);
}

void defineVelocity(py::module_& module) {
    using Velocity = ADSBAirborneVelocityMessage;
    MessageClass<Velocity> velocity(module, TREVALLO_CLASS(ADSBAirborneVelocityMessage));
    defineEnumeration<Velocity::VelocityType>(velocity);
    defineEnumeration<Velocity::VerticalRateSource>(velocity);
    velocity.constructor(py::init<>())
        .PROPERTY(ADSBAirborneVelocityMessage, velocityType)
        .PROPERTY(ADSBAirborneVelocityMessage, groundSpeed)
        .PROPERTY(ADSBAirborneVelocityMessage, heading)
        .PROPERTY(ADSBAirborneVelocityMessage, verticalRateSource)
        .PROPERTY(ADSBAirborneVelocityMessage, verticalRate);
    VERSION(ADSBAirborneVelocityMessage, V0).PROPERTY(ADSBAirborneVelocityMessageV0, nucr);
    VERSION(ADSBAirborneVelocityMessage, V1);
    VERSION(ADSBAirborneVelocityMessage, V2);
}

void defineStatus(py::module_& module) {
    using Status = ADSBAircraftStatusMessage;
    MessageClass<Status> status(module, TREVALLO_CLASS(ADSBAircraftStatusMessage));
    defineEnumeration<Status::Subtype>(status);
    defineEnumeration<Status::EmergencyState>(status);
    status.constructor(py::init<>())
        .PROPERTY(ADSBAircraftStatusMessage, subtype)
        .PROPERTY(ADSBAircraftStatusMessage, emergencyState);
    VERSION(ADSBAircraftStatusMessage, V0);
    VERSION(ADSBAircraftStatusMessage, V2)
        .PROPERTY(ADSBAircraftStatusMessageV2, modeACode)
        .PROPERTY(ADSBAircraftStatusMessageV2, modeAOctString);

    MESSAGE(ADSBTargetStatusMessage)
        .PROPERTY(ADSBTargetStatusMessage, subtype)
        .PROPERTY(ADSBTargetStatusMessage, nacp)
        .PROPERTY(ADSBTargetStatusMessage, nicBaro)
        .PROPERTY(ADSBTargetStatusMessage, sil);
    VERSION(ADSBTargetStatusMessage, V1);
    VERSION(ADSBTargetStatusMessage, V2).PROPERTY(ADSBTargetStatusMessageV2, silSupp);

    MESSAGE(ADSBAircraftOperationalStatusMessage)
        .PROPERTY(ADSBAircraftOperationalStatusMessage, versionNumber)
        .PROPERTY(ADSBAircraftOperationalStatusMessage, version)
        .PROPERTY(ADSBAircraftOperationalStatusMessage, nicSupplementA);
}

} // namespace

void defineMessages(py::module_& module) {
    defineField(module);
    defineMessage(module);
    MESSAGE(ADSBIdentityMessage).PROPERTY(ADSBIdentityMessage, emitterCategory).PROPERTY(ADSBIdentityMessage, callsign);
    definePositions(module);
    defineVelocity(module);
    defineStatus(module);
    MESSAGE(ADSBTestMessage)
        .PROPERTY(ADSBTestMessage, subtype)
        .property(TREVALLO_NAME(ADSBTestMessage, testData), asBytes(&ADSBTestMessage::testData));
    Class<ADSBDecoder>(module, TREVALLO_CLASS(ADSBDecoder))
        .constructor(py::init<>())
        .method(
            TREVALLO_NAME(ADSBDecoder, decode),
            [](ADSBDecoder const& self, MOPSVersion version, Bytes const& me) {
                return orNone(self.decode(version, me.bytes));
            },
            "version"_a, "me"_a);
}

} // namespace quorvel::modes::python
