// SPDX-License-Identifier: MIT
#include "binding.h"
#include "item.h"

#include <initializer_list>
#include <map>

namespace quorvel::modes::python {

namespace {

using airspace::TimeMs;

// NAME(time) and the others are of the class that CLASS is defined as.
#define NAME(member) NAME_OF(CLASS, member)
#define NAME_OF(Class, member) TREVALLO_NAME(airspace::Class, member)
#define MEMBER(member) NAME(member), &airspace::CLASS::member
#define READ(member) property(NAME(member), [](airspace::CLASS const& self) { return self.member; })
#define READ_WRITE(member) dataMember(MEMBER(member))
#define OPTION(Options, member) TREVALLO_NAME(airspace::Options, member)

// Options are keywords of a constructor, each with what the headers say of it.
std::string withOptions(std::string text, std::initializer_list<Name> options) {
    text += "\n";
    for (auto const& option : options) text += std::string("\n") + option.name + ": " + option.text;
    return text;
}

// "frames_by_format_17"
std::map<std::string, std::uint64_t> byName(airspace::Counts const& counts) {
    std::map<std::string, std::uint64_t> named;
    for (auto const& text : airspace::listed(counts)) {
        std::string name(text.name);
        if (!text.value.empty()) name += "_" + std::string(text.value);
        named[name] = text.count;
    }
    return named;
}

void defineValues(py::module_& module) {
#define CLASS Place
    Class<airspace::Place>(module, TREVALLO_CLASS(airspace::Place))
        .constructor(py::init([](double latitude, double longitude) {
            return airspace::Place{latitude, longitude};
        }),
            "latitude"_a, "longitude"_a)
        .READ_WRITE(latitude)
        .READ_WRITE(longitude)
        .def("__eq__", [](airspace::Place const& self, airspace::Place const& other) { return self == other; });
#undef CLASS
#define CLASS Squawk
    Class<airspace::Squawk>(module, TREVALLO_CLASS(airspace::Squawk)).READ(code).property(MEMBER(emergency));
#undef CLASS
#define CLASS EmitterCategory
    Class<airspace::EmitterCategory>(module, TREVALLO_CLASS(airspace::EmitterCategory))
        .property(NAME(set),
            [](airspace::EmitterCategory const& self) {
                return self.set == 0 ? std::string() : std::string(1, self.set);
            })
        .READ(number);
#undef CLASS
#define CLASS Item
    Class<AnyItem> item(module, TREVALLO_CLASS(airspace::Item));
    item.property(NAME(value), [](AnyItem const& self) { return self.value; })
        .property(NAME(source), [](AnyItem const& self) { return self.source; })
        .property(NAME(updated), [](AnyItem const& self) { return self.updated; })
        .property(NAME(changed), [](AnyItem const& self) { return self.changed; });
#undef CLASS
    // Item[int] says in annotations what the value of an item is.
    item.attr("__class_getitem__") =
        py::module_::import("builtins").attr("classmethod")(py::module_::import("types").attr("GenericAlias"));
}

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

#define CLASS Reply
void defineReply(py::module_& module) {
    Class<airspace::Reply>(module, TREVALLO_CLASS(airspace::Reply))
        .READ(isDecoded)
        .READ(format)
        .READ(address)
        .READ(confidence)
        .READ(overlay)
        .READ(overlaid)
        .property(NAME(repairedBits),
            [](airspace::Reply const& self) {
                auto const* const first = self.repairedBits.data();
                return std::vector<int>(first, first + self.repairs);
            })
        .READ(repairs)
        .READ(typeCode)
        .READ(type)
        .READ(track)
        .READ(isPositionShown);
}
#undef CLASS

#define CLASS Aircraft
void defineAircraft(py::module_& module) {
    Class<airspace::Aircraft> aircraft(module, TREVALLO_CLASS(airspace::Aircraft));
    aircraft.READ(address).READ(track).READ(now).READ(heard).READ(messages).READ(positionsRefused);
    aircraft.READ(callsign).READ(emitterCategory).READ(squawk);
    aircraft.READ(position).READ(signalAmplitude).READ(altitudeBaro).READ(groundSpeed).READ(heading);
    aircraft.READ(verticalRateBaro).READ(groundStatus).READ(spiStatus).READ(alertStatus);
    aircraft.READ(mopsVersion).READ(mopsVersionConfirmed);
    aircraft.READ(nucp).READ(nucr).READ(nic).READ(nicSuppA).READ(nicSuppB).READ(nicSuppC);
    aircraft.READ(pic).READ(nacp).READ(sil);
    aircraft.method(MEMBER(age), "since"_a).def("__repr__", [](py::object const& self) {
        return shown(self, airspace::addressText(self.cast<airspace::Aircraft const&>().address));
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

#define CLASS Sky
void defineSky(py::module_& module) {
    using airspace::RepairedReplies;
    auto const text = withOptions(textOf("airspace::Sky::Sky"),
        {OPTION(SkyOptions, altitudeCheck), OPTION(SkyOptions, repaired), OPTION(PositionLimits, receiver),
            OPTION(PositionLimits, rangeNm), OPTION(PositionLimits, checksSpeed), OPTION(SkyOptions, timeout)});
    Class<airspace::Sky>(module, TREVALLO_CLASS(airspace::Sky))
        .constructor(py::init([](bool altitudeCheck, RepairedReplies repaired, std::optional<airspace::Place> receiver,
                                  double rangeNm, bool checksSpeed, TimeMs timeout) {
            return airspace::Sky({altitudeCheck, repaired, {receiver, rangeNm, checksSpeed}, timeout});
        }),
            text.c_str(), py::kw_only(), "altitudeCheck"_a = false,
            py::arg_v("repaired", RepairedReplies::Known, "RepairedReplies.Known"), "receiver"_a = py::none(),
            "rangeNm"_a = airspace::PositionLimits().rangeNm, "checksSpeed"_a = true, "timeout"_a = 0)
        .method(MEMBER(take), "frame"_a)
        .method(MEMBER(setTimeout), "timeout"_a)
        .method(MEMBER(ignoreSpeeds))
        .method(MEMBER(dropSilent), "now"_a)
        .method(MEMBER(dropAll))
        .method(MEMBER(aircraft), "now"_a)
        .method(MEMBER(find), "address"_a, "now"_a)
        .property(MEMBER(size))
        .property(NAME(counts), [](airspace::Sky const& self) { return byName(self.counts()); })
        .property(NAME(message), [](airspace::Sky const& self) { return orNone(self.message()); })
        .method(NAME(report), withNone(&airspace::Sky::report), "address"_a)
        .method(MEMBER(tracker), py::return_value_policy::reference_internal);
}
#undef CLASS

void defineAirspaceFunctions(py::module_& module) {
    auto const function = [&](Name const& name, auto const& callable, auto const&... extra) {
        module.def(name.name, callable, name.text, extra...);
    };
#define FUNCTION(name) TREVALLO_FUNCTION(airspace::name), &airspace::name
    function(FUNCTION(addressText), "address"_a);
    function(FUNCTION(textOf), "squawk"_a);
    function(FUNCTION(distanceNm), "from_"_a, "to"_a);
    // registers have names by a function of the same name; readings give them as text
    Name const nameOf{"nameOf", "What an encoding is called in sentences: \"AVR text\"."};
    function(nameOf, py::overload_cast<airspace::Encoding>(&airspace::nameOf), "encoding"_a);
    function(FUNCTION(identifierOf), "encoding"_a);
    function(FUNCTION(encodingOf), "identifier"_a);
}

} // namespace

void defineAirspace(py::module_& parent) {
    auto module = parent.def_submodule(
        "airspace", "What hosts of live receivers need: streams of dated frames, and a sky of aircraft.");
    defineEnumeration<airspace::Source>(module);
    defineEnumeration<airspace::Emergency>(module);
    defineEnumeration<airspace::Encoding>(module);
    defineEnumeration<airspace::Overlay>(module);
    defineEnumeration<airspace::RepairedReplies>(module);
    defineEnumeration<airspace::TimeReading>(module);
    defineEnumeration<airspace::Origin>(module);
    defineValues(module);
    defineFrame(module);
    defineReply(module);
    defineAircraft(module);
    defineStreamClass(module);
    defineSky(module);
    defineAirspaceFunctions(module);
    defineReadings(module);
}

} // namespace quorvel::modes::python
