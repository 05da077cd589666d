// SPDX-License-Identifier: MIT
#include "binding.h"

namespace quorvel::modes::python {

namespace {

// What is left of the buffer replaces it, in one step: a buffer that is being read cannot change its
// size, and then it stays as it was.
template <class Extract> ModeSEncapsulation::Records takeFrom(py::bytearray& buffer, Extract const& extract) {
    auto bytes = static_cast<std::string>(buffer);
    auto records = extract(bytes);
    if (PyByteArray_Resize(buffer.ptr(), static_cast<Py_ssize_t>(bytes.size())) != 0) throw py::error_already_set();
    std::copy(bytes.begin(), bytes.end(), PyByteArray_AsString(buffer.ptr()));
    return records;
}

auto extractor(ModeSEncapsulation::Records (*extract)(std::string&)) {
    return [extract](py::bytearray& buffer) { return takeFrom(buffer, extract); };
}

auto encoder(std::string (*encapsulate)(ModeSEncapsulation const&)) {
    return [encapsulate](ModeSEncapsulation const& record) { return Bytes{encapsulate(record)}; };
}

} // namespace

void defineEncapsulation(py::module_& module) {
    using Record = ModeSEncapsulation;
    Class<Record, std::shared_ptr<Record>> record(module, TREVALLO_CLASS(ModeSEncapsulation));
    defineEnumeration<Record::Format>(record);
#define NAME(member) TREVALLO_NAME(ModeSEncapsulation, member)
#define MEMBER(member) TREVALLO_MEMBER(ModeSEncapsulation, member)
    record.constructor(py::init<>())
        .property(MEMBER(timeStamp), MEMBER(setTimeStamp))
        .property(NAME(data), asBytes(&Record::data), NAME(setData),
            [](Record& self, Bytes const& data) { self.setData(data.bytes); })
        .staticMethod(MEMBER(identifier), "format"_a)
        .staticMethod(MEMBER(name), "format"_a)
        .staticMethod(MEMBER(fromIdentifier), "identifier"_a)
        .staticMethod(
            NAME(extract),
            [](py::bytearray& buffer, Record::Format format) {
                return takeFrom(buffer, [format](std::string& bytes) { return Record::extract(bytes, format); });
            },
            "buffer"_a, "format"_a)
        .staticMethod(NAME(extractRawHex), extractor(&Record::extractRawHex), "buffer"_a)
        .staticMethod(NAME(extractRawBin), extractor(&Record::extractRawBin), "buffer"_a)
        .staticMethod(NAME(extractAvr), extractor(&Record::extractAvr), "buffer"_a)
        .staticMethod(NAME(extractBeast), extractor(&Record::extractBeast), "buffer"_a)
        .staticMethod(
            NAME(encapsulate),
            [](Record const& self, Record::Format format) { return Bytes{Record::encapsulate(self, format)}; },
            "record"_a, "format"_a)
        .staticMethod(NAME(encapsulateRawHex), encoder(&Record::encapsulateRawHex), "record"_a)
        .staticMethod(NAME(encapsulateRawBin), encoder(&Record::encapsulateRawBin), "record"_a)
        .staticMethod(NAME(encapsulateAvr), encoder(&Record::encapsulateAvr), "record"_a)
        .def("__repr__",
            [](py::object const& self) { return shown(self, self.attr("data").attr("hex")().cast<std::string>()); });
#undef NAME
#undef MEMBER
}

} // namespace quorvel::modes::python
