// SPDX-License-Identifier: MIT
#include "airspace_names.h"
#include "item.h"
#include "reading_value.h"

#include <pybind11/functional.h>

#include <functional>

namespace quorvel::modes::python {

namespace {

using airspace::TimeMs;

#define CLASS RegisterChoice
void defineRegisterChoice(py::module_& module) {
    Class<airspace::RegisterChoice>(module, TREVALLO_CLASS(airspace::RegisterChoice))
        .READ(best)
        .READ(score)
        .READ(isUnsure);
}
#undef CLASS

// A register that was surely chosen is read as that.
ReadMessage messageOf(airspace::Reply const& reply) { return {reply.message, surelyHeld(reply), std::nullopt}; }

#define CLASS Reply
void defineReply(py::module_& module) {
    Class<airspace::Reply>(module, TREVALLO_CLASS(airspace::Reply))
        .property(NAME(message), messageOf)
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
        .READ(registerChoice)
        .READ(isTracked)
        .READ(isPositionShown);
}
#undef CLASS

// What both skies have. Their options are keywords of the constructor.
template <class AnySky> void defineOptions(Class<AnySky>& sky, char const* text) {
    using airspace::RepairedReplies;
    auto const withOptionTexts = withOptions(
        text, {OPTION(SkyOptions, altitudeCheck), OPTION(SkyOptions, repaired), OPTION(PositionLimits, receiver),
                  OPTION(PositionLimits, rangeNm), OPTION(PositionLimits, checksSpeed), OPTION(SkyOptions, timeout)});
    sky.constructor(py::init([](bool altitudeCheck, RepairedReplies repaired, std::optional<airspace::Place> receiver,
                                 double rangeNm, bool checksSpeed, TimeMs timeout) {
        return AnySky({altitudeCheck, repaired, {receiver, rangeNm, checksSpeed}, timeout});
    }),
        withOptionTexts.c_str(), py::kw_only(), "altitudeCheck"_a = false,
        py::arg_v("repaired", RepairedReplies::Known, "RepairedReplies.Known"), "receiver"_a = py::none(),
        "rangeNm"_a = airspace::PositionLimits().rangeNm, "checksSpeed"_a = true, "timeout"_a = 0);
}

#define CLASS Sky
void defineSkyClass(py::module_& module) {
    using airspace::AddressKind, airspace::Sky;
    Class<Sky> sky(module, TREVALLO_CLASS(airspace::Sky));
    defineOptions(sky, textOf("airspace::Sky::Sky"));
    using Each = std::function<void(airspace::Frame const&, airspace::Reply const&)>;
    sky.method(MEMBER(take), "frame"_a)
        .method(
            NAME(takeAll), [](Sky& self, airspace::Frames const& frames) { self.takeAll(frames); }, "frames"_a)
        .overload(
            "takeAll", [](Sky& self, airspace::Frames const& frames, Each const& each) { self.takeAll(frames, each); },
            "frames"_a, "each"_a)
        .method(MEMBER(expect), "frame"_a)
        .method(MEMBER(setTimeout), "timeout"_a)
        .method(MEMBER(ignoreSpeeds))
        .method(MEMBER(dropSilent), "now"_a)
        .method(MEMBER(dropAll))
        .method(MEMBER(aircraft), "now"_a)
        .method(
            NAME(find),
            [](Sky const& self, std::uint32_t address, TimeMs now, AddressKind kind) {
                return self.find(address, now, kind);
            },
            "address"_a, "now"_a, py::arg_v("kind", AddressKind::Icao, "AddressKind.Icao"))
        .overload(
            "find", [](Sky const& self, airspace::Reply const& reply, TimeMs now) { return self.find(reply, now); },
            "reply"_a, "now"_a)
        .property(MEMBER(size))
        .property(NAME(counts), [](Sky const& self) { return byName(self.counts()); });
}
#undef CLASS

#define CLASS CoreSky
void defineCoreSky(py::module_& module) {
    using airspace::CoreSky;
    Class<CoreSky> sky(module, TREVALLO_CLASS(airspace::CoreSky));
    defineOptions(sky, textOf("airspace::CoreSky::CoreSky"));
    sky.method(MEMBER(take), "frame"_a)
        .method(MEMBER(setTimeout), "timeout"_a)
        .method(MEMBER(ignoreSpeeds))
        .method(MEMBER(dropSilent), "now"_a)
        .method(MEMBER(dropAll))
        .method(MEMBER(aircraft), "now"_a)
        .method(MEMBER(find), "address"_a, "now"_a)
        .property(MEMBER(size))
        .property(NAME(counts), [](CoreSky const& self) { return byName(self.counts()); })
        .property(NAME(message), [](CoreSky const& self) { return orNone(self.message()); })
        .method(NAME(report), withNone(&CoreSky::report), "address"_a)
        .method(MEMBER(tracker), py::return_value_policy::reference_internal);
}
#undef CLASS

} // namespace

void defineSky(py::module_& airspace) {
    defineRegisterChoice(airspace);
    defineReply(airspace);
    defineSkyClass(airspace);
    defineCoreSky(airspace);
}

} // namespace quorvel::modes::python
