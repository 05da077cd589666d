// SPDX-License-Identifier: MIT
#include "binding.h"
#include "reading_value.h"

#include <airspace/message_fields.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace quorvel::modes::python {

namespace {

using airspace::Register;

// A visitor of fields that puts them into a dictionary.
class Entries {
public:
    explicit Entries(py::dict& named) : _named(named) {}

    void operator()(std::string_view name, bool value) { set(name, py::bool_(value)); }
    void operator()(std::string_view name, int value) { set(name, py::int_(value)); }
    void operator()(std::string_view name, double value) { set(name, py::float_(value)); }
    void operator()(std::string_view name, std::string_view value) { set(name, text(value)); }

    void operator()(std::string_view name, airspace::RegisterNumbers const& numbers) {
        py::list names;
        for (auto const number : numbers) names.append(text(airspace::nameOf(number).text()));
        set(name, names);
    }

private:
    static py::str text(std::string_view value) { return {value.data(), value.size()}; }
    void set(std::string_view name, py::object const& value) { _named[text(name)] = value; }

    py::dict& _named;
};

// A visitor of fields that takes them out again.
class Removal {
public:
    explicit Removal(py::dict& named) : _named(named) {}

    template <class Value> void operator()(std::string_view name, Value const&) {
        _named.attr("pop")(py::str(name.data(), name.size()));
    }

private:
    py::dict& _named;
};

// In place of what the bits alone say.
void readAs(Register number, std::string_view mb, py::dict& named) {
    airspace::visitFittingRegisters(Removal(named), mb);
    Entries entries(named);
    entries("bds", airspace::nameOf(number).text());
    airspace::visitFields(entries, airspace::readRegister(mb, number));
}

py::dict namedValues(ReadMessage const& self) {
    py::dict named;
    Entries entries(named);
    airspace::visitFields(entries, self.message);
    auto const mb = airspace::registerBytes(self.message);
    if (self.number && !mb.empty()) readAs(*self.number, mb, named);
    if (self.place) {
        entries("latitude", self.place->latitude);
        entries("longitude", self.place->longitude);
    }
    return named;
}

std::optional<Register> registerNamed(std::optional<std::string> const& name) {
    if (!name) return std::nullopt;
    for (auto const number : airspace::kRegisters) {
        if (airspace::nameOf(number).text() == *name) return number;
    }
    throw py::value_error("there is no register " + *name + " among those that are read");
}

std::optional<airspace::Place> placeOf(
    airspace::Message const& message, std::optional<std::pair<double, double>> const& reference) {
    auto const* const squitter = std::get_if<airspace::ExtendedSquitter>(&message);
    if (squitter == nullptr || !reference) return std::nullopt;
    return std::visit(
        [&](auto const& content) -> std::optional<airspace::Place> {
            if constexpr (requires { content.position; })
                return airspace::localPosition(content.position, {reference->first, reference->second});
            else
                return std::nullopt;
        },
        squitter->content);
}

ReadMessage readFrame(std::string_view frame, std::optional<std::string> const& number,
    std::optional<std::pair<double, double>> const& reference) {
    auto message = airspace::read(frame);
    auto const place = placeOf(message, reference);
    return {std::move(message), registerNamed(number), place};
}

constexpr char kMessageText[] =
    "What a frame says by the standards: ICAO Annex 10 Vol. IV, Doc 9871, RTCA DO-181 and DO-260, DO-260A, DO-260B.";

constexpr char kNamesText[] =
    "The values by name, with the names and units of `trevallo decode --jsonl`: whole numbers, floats, bools, texts and\n"
    "lists of register names. What the frame does not hold is left out; nothing is there for bytes that are no frame.";

constexpr char kReadText[] =
    "Reads the bytes of a Mode S frame, or the hexadecimal digits of them, by the standards. Every content is read, intact\n"
    "or not, and bytes that are no frame give a message without values. Text that is no hexadecimal digits is a\n"
    "ValueError.\n"
    "\n"
    "register: reads the field MB of a Comm-B reply as this register, such as \"5,0\", whether it fits or not; by default\n"
    "    it is read as the register that its bits fit alone. A register that is not read is a ValueError.\n"
    "reference: latitude and longitude, in degrees, of a place near the aircraft: within 180 NM in the air, 45 NM on the\n"
    "    surface. With it, positions have a latitude and a longitude.";

} // namespace

void defineReadings(py::module_& module) {
    Class<ReadMessage>(module, {"Message", kMessageText})
        .method({"to_dict", kNamesText}, namedValues)
        .def("__repr__",
            [](py::object const& self) { return shown(self, py::str(self.attr("to_dict")()).cast<std::string>()); });
    module.def(
        "read",
        [](BytesView const& frame, std::optional<std::string> const& number,
            std::optional<std::pair<double, double>> const& reference) {
            return readFrame(frame.bytes(), number, reference);
        },
        kReadText, "frame"_a, "register"_a = py::none(), "reference"_a = py::none());
    module.def(
        "read",
        [](py::str const& frame, std::optional<std::string> const& number,
            std::optional<std::pair<double, double>> const& reference) {
            auto const bytes = py::module_::import("builtins").attr("bytes").attr("fromhex")(frame);
            return readFrame(bytes.cast<std::string>(), number, reference);
        },
        "frame"_a, "register"_a = py::none(), "reference"_a = py::none());
}

} // namespace quorvel::modes::python
