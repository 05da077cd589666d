// SPDX-License-Identifier: MIT
#include "airspace_names.h"
#include "item.h"

#include <stdexcept>
#include <type_traits>

namespace quorvel::modes::python {

namespace {

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
#define CLASS SelectedModes
    Class<airspace::SelectedModes> modes(module, TREVALLO_CLASS(airspace::SelectedModes));
    modes.READ(autopilot).READ(vnav).READ(altitudeHold).READ(approach).READ(lnav).READ(tcas);
#undef CLASS
}

void defineAdvisory(py::module_& module) {
#define CLASS SameSenseAdvisory
    Class<airspace::SameSenseAdvisory> same(module, TREVALLO_CLASS(airspace::SameSenseAdvisory));
    same.READ(isCorrective).READ(isDownward).READ(isIncreasedRate).READ(isSenseReversal);
    same.READ(crossesAltitude).READ(isPositive);
#undef CLASS
#define CLASS MixedSenseAdvisory
    Class<airspace::MixedSenseAdvisory> mixed(module, TREVALLO_CLASS(airspace::MixedSenseAdvisory));
    mixed.READ(correctsUpward).READ(requiresClimb).READ(correctsDownward).READ(requiresDescent);
    mixed.READ(crossesAltitude).READ(isSenseReversal);
#undef CLASS
#define CLASS ResolutionAdvisory
    Class<airspace::ResolutionAdvisory> advisory(module, TREVALLO_CLASS(airspace::ResolutionAdvisory));
    advisory.READ(ara).READ(rac).READ(isTerminated).READ(hasMultipleThreats).READ(sameSense).READ(mixedSense);
    advisory.READ(noBelow).READ(noAbove).READ(noLeft).READ(noRight);
    advisory.READ(threatType).READ(threatAddress).READ(threatAltitudeFt).READ(threatRangeNm);
    advisory.READ(threatBearingDegrees).property(MEMBER(isIssued));
#undef CLASS
}

void defineItem(py::module_& module) {
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

using airspace::Aircraft;

// The item of this type and name.
template <class Item> Item itemOf(Aircraft const& aircraft, std::string_view name) {
    Item found;
    airspace::visitItems(aircraft, [&](airspace::ItemText const& text, auto const& item) {
        if constexpr (std::is_same_v<std::decay_t<decltype(item)>, Item>) {
            if (text.name == name) found = item;
        }
    });
    return found;
}

// Each under the name that lists of items have for it, which is that of the member.
void defineItems(Class<Aircraft>& described) {
    Aircraft const any;
    airspace::visitItems(any, [&](airspace::ItemText const& text, auto const& item) {
        using Item = std::decay_t<decltype(item)>;
        std::string const name(text.name);
        auto const* const known = findText("airspace::Aircraft::" + name);
        if (!known) throw std::invalid_argument("no such item: " + name);
        described.property(Name{name.c_str(), known->text},
            [name = text.name](Aircraft const& self) { return itemOf<Item>(self, name); });
    });
}

#define CLASS Aircraft
void defineAircraftClass(py::module_& module) {
    Class<Aircraft> aircraft(module, TREVALLO_CLASS(airspace::Aircraft));
    aircraft.READ(address).READ(addressKind).READ(trackNumber).READ(now).READ(heard).READ(messages);
    aircraft.READ(positionsRefused).READ(stateCode).READ(state).READ(isMilitaryAddress).READ(mopsVersionConfirmed);
    defineItems(aircraft);
    aircraft.method(MEMBER(age), "since"_a).def("__repr__", [](py::object const& self) {
        auto const& one = self.cast<Aircraft const&>();
        return shown(self, airspace::addressText(one.address, one.addressKind));
    });
}
#undef CLASS

} // namespace

void defineAircraft(py::module_& airspace) {
    defineValues(airspace);
    defineAdvisory(airspace);
    defineItem(airspace);
    defineAircraftClass(airspace);
}

} // namespace quorvel::modes::python
