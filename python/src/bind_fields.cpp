// SPDX-License-Identifier: MIT
#include "binding.h"

namespace quorvel::modes::python {

namespace {

using Field = ModeSMessageField;

/// Fields are never deleted through their base.
using FieldHolder = std::unique_ptr<Field, py::nodelete>;

template <class T> using FieldClass = Class<T, Field>;

} // namespace

void defineFields(py::module_& module) {
    Class<Field, FieldHolder> field(module, TREVALLO_CLASS(ModeSMessageField));
    defineEnumeration<Field::Designator>(field);
#define MEMBER(member) TREVALLO_MEMBER(ModeSMessageField, member)
    field.property(MEMBER(bits))
        .property(MEMBER(description))
        .method(
            TREVALLO_NAME(ModeSMessageField, decodeImpl),
            [](Field& self, Bytes const& data, unsigned char pos) { return self.decodeImpl(data.bytes, pos); },
            "data"_a, "pos"_a)
        .staticMethod(MEMBER(designatorName), "designator"_a)
        .staticMethod(MEMBER(designatorFullName), "designator"_a)
        .property(MEMBER(designator))
        .property(MEMBER(name))
        .property(MEMBER(fullName))
        .property(MEMBER(pos))
        .property(MEMBER(valid))
        .method(
            TREVALLO_NAME(ModeSMessageField, decode),
            [](Field& self, Bytes const& data, unsigned char pos) { return self.decode(data.bytes, pos); }, "data"_a,
            "pos"_a)
        .def("__repr__", [](py::object const& self) { return shown(self, self.cast<Field const&>().description()); });
#undef MEMBER

#define FIELD(name)                                                                                                    \
    FieldClass<ModeSMessageField##name>(module, TREVALLO_CLASS(ModeSMessageField##name)).constructor(py::init<>())
#define PROPERTY(name, member) property(TREVALLO_MEMBER(ModeSMessageField##name, member))
#define BYTES(name) property(TREVALLO_NAME(ModeSMessageField##name, data), asBytes(&ModeSMessageField##name::data))
    FIELD(AA).PROPERTY(AA, icaoAddress).PROPERTY(AA, icaoAddressHexString);
    FIELD(AC).PROPERTY(AC, altitudeUnit).PROPERTY(AC, altitudeResolution).PROPERTY(AC, altitude);
    FIELD(AF).PROPERTY(AF, code);
    FIELD(AP)
        .PROPERTY(AP, addressParity)
        .PROPERTY(AP, addressParityHexString)
        .PROPERTY(AP, parity)
        .PROPERTY(AP, icaoAddress)
        .method(TREVALLO_MEMBER(ModeSMessageFieldAP, setParity), "parity"_a);
    FIELD(CA).PROPERTY(CA, capability);
    FIELD(CF).PROPERTY(CF, code);
    FIELD(FS).PROPERTY(FS, flightStatus);
    FIELD(ID).PROPERTY(ID, identity);
    FIELD(MB).BYTES(MB).PROPERTY(MB, dataHexString);
    FIELD(ME).BYTES(ME).PROPERTY(ME, dataHexString);
    FIELD(MV).BYTES(MV).PROPERTY(MV, dataHexString);
    FIELD(PI)
        .PROPERTY(PI, parityInterrogatorId)
        .PROPERTY(PI, parityInterrogatorIdHexString)
        .PROPERTY(PI, parity)
        .PROPERTY(PI, interrogatorId)
        .PROPERTY(PI, interrogatorIdValid)
        .method(TREVALLO_MEMBER(ModeSMessageFieldPI, setParity), "parity"_a)
        .method(TREVALLO_MEMBER(ModeSMessageFieldPI, setInterrogatorId), "interrogatorId"_a)
        .attr("kInterrogatorIds") = +ModeSMessageFieldPI::kInterrogatorIds;
    FIELD(VS).PROPERTY(VS, verticalStatus);
#undef FIELD
#undef PROPERTY
#undef BYTES
}

} // namespace quorvel::modes::python
