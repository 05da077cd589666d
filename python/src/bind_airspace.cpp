// SPDX-License-Identifier: MIT
#include "airspace_names.h"

namespace quorvel::modes::python {

namespace {

using airspace::TimeMs;

#define CLASS Frame
void defineFrame(py::module_& module) {
    Class<airspace::Frame>(module, TREVALLO_CLASS(airspace::Frame))
        .property(NAME(bytes), [](airspace::Frame const& self) { return Bytes{std::string(self.view())}; })
        .READ(length)
        .READ_WRITE(signal)
        .READ_WRITE(time)
        .READ_WRITE(now)
        .READ_WRITE(stamp)
        .READ_WRITE(receiver)
        .property(MEMBER(isModeAc))
        .staticMethod(
            NAME(of), [](BytesView const& bytes, TimeMs time) { return airspace::Frame::of(bytes.bytes(), time); },
            "bytes"_a, "time"_a = 0)
        .def("__repr__", [](py::object const& self) {
            return shown(self, self.attr("bytes").attr("hex")().attr("upper")().cast<std::string>());
        });
}
#undef CLASS

template <class Take> airspace::Frames framesOf(airspace::Stream const& stream, Take const& take) {
    airspace::Frames frames;
    if (!take(frames)) raiseUnknownEncoding(stream);
    return frames;
}

#define CLASS Stream
void defineStreamClass(py::module_& module) {
    using airspace::Origin, airspace::TimeReading;
    auto const text = withOptions(textOf("airspace::Stream::Stream"),
        {OPTION(StreamOptions, encoding), OPTION(TimeOptions, reading), OPTION(TimeOptions, start),
            OPTION(StreamOptions, origin), OPTION(StreamOptions, receiver)});
    Class<airspace::Stream>(module, TREVALLO_CLASS(airspace::Stream))
        .constructor(py::init([](std::optional<airspace::Encoding> encoding, TimeReading reading, TimeMs start,
                                  Origin origin, std::uint64_t receiver) {
            return airspace::Stream({encoding, {reading, start}, origin, receiver});
        }),
            text.c_str(), py::kw_only(), "encoding"_a = py::none(),
            py::arg_v("reading", TimeReading::Auto, "TimeReading.Auto"), "start"_a = 0,
            py::arg_v("origin", Origin::Recording, "Origin.Recording"), "receiver"_a = 0)
        .method(
            NAME(feed),
            [](airspace::Stream& self, BytesView const& bytes, TimeMs arrival) {
                return framesOf(self, [&](auto& frames) { return self.feed(bytes.bytes(), arrival, frames); });
            },
            "bytes"_a, "arrival"_a = 0)
        .method(
            NAME(settle),
            [](airspace::Stream& self, TimeMs arrival) {
                return framesOf(self, [&](auto& frames) { return self.settle(arrival, frames); });
            },
            "arrival"_a = 0)
        .method(
            NAME(finish),
            [](airspace::Stream& self, TimeMs arrival) {
                return framesOf(self, [&](auto& frames) { return self.finish(arrival, frames); });
            },
            "arrival"_a = 0)
        .method(MEMBER(remark))
        .property(MEMBER(isUnsettled))
        .property(MEMBER(otherContent))
        .property(MEMBER(encoding))
        .property(MEMBER(timeReading))
        .property(MEMBER(timeKnown))
        .property(MEMBER(now))
        .property(NAME(counts), [](airspace::Stream const& self) { return byName(self.counts()); });
}
#undef CLASS

void defineAirspaceFunctions(py::module_& module) {
    auto const function = [&](Name const& name, auto const& callable, auto const&... extra) {
        module.def(name.name, callable, name.text, extra...);
    };
#define FUNCTION(name) TREVALLO_FUNCTION(airspace::name), &airspace::name
    function(FUNCTION(addressText), "address"_a, py::arg_v("kind", airspace::AddressKind::Icao, "AddressKind.Icao"));
    function(FUNCTION(textOf), "squawk"_a);
    function(FUNCTION(distanceNm), "from_"_a, "to"_a);
    Name const nameOf{
        "nameOf", "What an encoding is called in sentences, \"AVR text\", and a register by its number, \"4,0\"."};
    function(nameOf, py::overload_cast<airspace::Encoding>(&airspace::nameOf), "encoding"_a);
    module.def(
        "nameOf", [](airspace::Register number) { return std::string(airspace::nameOf(number).text()); }, "number"_a);
    function(FUNCTION(identifierOf), "encoding"_a);
    function(FUNCTION(encodingOf), "identifier"_a);
}

} // namespace

std::string withOptions(std::string text, std::initializer_list<Name> options) {
    text += "\n";
    for (auto const& option : options) text += std::string("\n") + option.name + ": " + option.text;
    return text;
}

std::map<std::string, std::uint64_t> byName(airspace::Counts const& counts) {
    std::map<std::string, std::uint64_t> named;
    for (auto const& text : airspace::listed(counts)) {
        std::string name(text.name);
        if (!text.value.empty()) name += "_" + std::string(text.value);
        named[name] = text.count;
    }
    return named;
}

void defineAirspace(py::module_& parent) {
    auto module = parent.def_submodule(
        "airspace", "What hosts of live receivers need: streams of dated frames, and a sky of aircraft.");
    defineEnumeration<airspace::AddressKind>(module);
    defineEnumeration<airspace::Source>(module);
    defineEnumeration<airspace::Emergency>(module);
    defineEnumeration<airspace::EmergencyState>(module);
    defineEnumeration<airspace::ThreatType>(module);
    defineEnumeration<airspace::SilBasis>(module);
    defineEnumeration<airspace::Register>(module);
    defineEnumeration<airspace::Encoding>(module);
    defineEnumeration<airspace::Overlay>(module);
    defineEnumeration<airspace::RepairedReplies>(module);
    defineEnumeration<airspace::TimeReading>(module);
    defineEnumeration<airspace::Origin>(module);
    defineAircraft(module);
    defineFrame(module);
    defineReadings(module);
    defineStreamClass(module);
    defineSky(module);
    defineAirspaceFunctions(module);
    defineArrays(module);
}

} // namespace quorvel::modes::python
