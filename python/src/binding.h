// SPDX-License-Identifier: MIT
#pragma once

#include "casters.h"

#include <pybind11/stl.h>

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

namespace quorvel::modes::python {

using namespace py::literals;

/// What the headers say of a class or member; null of a name that they do not have.
constexpr Text const* findText(std::string_view of) {
    auto const found = std::lower_bound(
        kTexts.begin(), kTexts.end(), of, [](Text const& text, std::string_view name) { return text.of < name; });
    return found != kTexts.end() && found->of == of ? &*found : nullptr;
}

/// The same of a name that is there: another one does not compile.
consteval char const* textOf(std::string_view of) {
    auto const* const found = findText(of);
    if (!found) throw std::invalid_argument("no such member");
    return found->text;
}

/// A name with its text. In Python every member has the name that it has in C++.
struct Name {
    char const* name;
    char const* text;
};

/// The name without the namespace in front of it.
consteval char const* lastOf(std::string_view name) {
    auto const colons = name.rfind("::");
    return name.data() + (colons == std::string_view::npos ? 0 : colons + 2);
}

// MEMBER(ADSBTarget, report) is the name and the function of a member, NAME(ADSBTarget, report) the name
// alone (for what needs a function of its own here), CLASS(ADSBTarget) the name of a class.
#define TREVALLO_NAME(Class, member)                                                                                   \
    quorvel::modes::python::Name { #member, quorvel::modes::python::textOf(#Class "::" #member) }
#define TREVALLO_MEMBER(Class, member) TREVALLO_NAME(Class, member), &Class::member
#define TREVALLO_CLASS(Class)                                                                                          \
    quorvel::modes::python::Name { quorvel::modes::python::lastOf(#Class), quorvel::modes::python::textOf(#Class) }
#define TREVALLO_FUNCTION(function)                                                                                    \
    quorvel::modes::python::Name {                                                                                     \
        quorvel::modes::python::lastOf(#function), quorvel::modes::python::textOf(#function)                           \
    }

/// A function of an object that must be there: called by its class's name, a function may be given `None` for
/// its object, which a bare pointer to the function would follow.
template <class Function> Function const& onObject(Function const& function) { return function; }
template <class Result, class Object, class... Arguments> auto onObject(Result (Object::*function)(Arguments...)) {
    return [function](Object& object, Arguments... arguments) -> Result {
        return (object.*function)(std::forward<Arguments>(arguments)...);
    };
}
template <class Result, class Object, class... Arguments>
auto onObject(Result (Object::*function)(Arguments...) const) {
    return [function](Object const& object, Arguments... arguments) -> Result {
        return (object.*function)(std::forward<Arguments>(arguments)...);
    };
}

/// A class of the library. Readers without arguments become properties; a setter that takes one value is
/// there under its own name, and assigning to the property does the same.
template <class T, class... Options> class Class : public py::class_<T, Options...> {
public:
    using Base = py::class_<T, Options...>;

    Class(py::handle scope, Name const& name) : Base(scope, name.name, name.text) {}

    template <class Made, class... Extra> Class& constructor(Made&& made, Extra const&... extra) {
        this->def(std::forward<Made>(made), extra...);
        return *this;
    }

    template <class Value> Class& dataMember(Name const& name, Value T::*member) {
        this->def_readwrite(name.name, member, name.text);
        return *this;
    }

    template <class Getter, class... Extra>
    Class& property(Name const& name, Getter const& getter, Extra const&... extra) {
        this->def_property_readonly(name.name, onObject(getter), name.text, extra...);
        return *this;
    }

    template <class Getter, class SetterName, class Setter>
    Class& property(Name const& name, Getter const& getter, SetterName const& setterName, Setter const& setter) {
        this->def_property(name.name, onObject(getter), onObject(setter), name.text);
        return method(setterName, setter, "value"_a);
    }

    template <class Function, class... Extra>
    Class& method(Name const& name, Function const& function, Extra const&... extra) {
        this->def(name.name, onObject(function), name.text, extra...);
        return *this;
    }

    /// One more form of a method, which is documented with the first.
    template <class Function, class... Extra>
    Class& overload(char const* name, Function const& function, Extra const&... extra) {
        this->def(name, onObject(function), extra...);
        return *this;
    }

    template <class Function, class... Extra>
    Class& staticMethod(Name const& name, Function const& function, Extra const&... extra) {
        this->def_static(name.name, function, name.text, extra...);
        return *this;
    }
};

/// Makes the `enum.IntEnum` of an enumeration in the scope that it has in C++; where the enumerators are
/// known in that scope, they are so here.
template <class E> void defineEnumeration(py::handle scope) {
    using Described = Enumeration<E>;
    py::list enumerators;
    for (auto const& [name, value] : Described::kEnumerators) {
        enumerators.append(py::make_tuple(name, static_cast<std::underlying_type_t<E>>(value)));
    }
    auto type = py::module_::import("enum").attr("IntEnum")(
        Described::kName, enumerators, "module"_a = Described::kModule, "qualname"_a = Described::kQualifiedName);
    type.attr("__doc__") = Described::kText;
    scope.attr(Described::kName) = type;
    if (!Described::kIsScoped) {
        for (auto const& [name, value] : Described::kEnumerators) scope.attr(name) = type.attr(name);
    }
    EnumerationClass<E>::members = py::object(type.attr("_value2member_map_")).release().ptr();
    EnumerationClass<E>::type = type.release().ptr();
}

/// Pointers to objects may be empty on both sides of a call: what is a pointer in C++ is an object or `None`.
template <class T> struct Maybe {
    using In = T;
    static T const& pass(T const& value) { return value; }
};
template <class T> struct Maybe<std::shared_ptr<T>> {
    using In = OrNone<T>;
    static std::shared_ptr<T> const& pass(OrNone<T> const& value) { return value.pointer; }
};

template <class Result> auto orNone(Result&& result) { return std::forward<Result>(result); }
template <class T> auto orNone(std::shared_ptr<T> result) {
    return OrNone<std::remove_const_t<T>>{std::const_pointer_cast<std::remove_const_t<T>>(std::move(result))};
}

template <class Result, class Object, class... Arguments, class Function> auto passingNone(Function function) {
    return [function](Object& object, typename Maybe<std::decay_t<Arguments>>::In const&... arguments) {
        if constexpr (std::is_void_v<Result>) {
            (object.*function)(Maybe<std::decay_t<Arguments>>::pass(arguments)...);
        } else {
            return orNone((object.*function)(Maybe<std::decay_t<Arguments>>::pass(arguments)...));
        }
    };
}
template <class Result, class Object, class... Arguments> auto withNone(Result (Object::*function)(Arguments...)) {
    return passingNone<Result, Object, Arguments...>(function);
}
template <class Result, class Object, class... Arguments>
auto withNone(Result (Object::*function)(Arguments...) const) {
    return passingNone<Result, Object, Arguments...>(function);
}

/// A reader of bytes that C++ keeps in a string.
template <class Object, class Result> auto asBytes(Result (Object::*reader)() const) {
    return [reader](Object const& object) { return Bytes{(object.*reader)()}; };
}

/// "<trevallo.ADSBTarget 4840D6>"
inline std::string shown(py::handle object, std::string const& what) {
    auto const type = py::type::handle_of(object);
    auto const name = type.attr("__module__").cast<std::string>() + "." + type.attr("__name__").cast<std::string>();
    return "<" + name + (what.empty() ? "" : " ") + what + ">";
}

/// Options are keywords of a constructor, each with what the headers say of it.
#define OPTION(Options, member) TREVALLO_NAME(airspace::Options, member)
std::string withOptions(std::string text, std::initializer_list<Name> options);

/// Counts that occurred, by their name and what they are of: "frames_by_format_17".
std::map<std::string, std::uint64_t> byName(airspace::Counts const& counts);

/// Raises `ValueError` for a stream whose encoding cannot be detected.
[[noreturn]] void raiseUnknownEncoding(airspace::Stream const& stream);

// The parts of the module, in the order in which they are defined.
void defineCore(py::module_& module);
void defineEncapsulation(py::module_& module);
void defineFields(py::module_& module);
void defineReplies(py::module_& module);
void defineMessages(py::module_& module);
void defineReport(py::module_& module);
void defineTarget(py::module_& module);
void defineTracker(py::module_& module);
void defineStream(py::module_& module);
void defineAirspace(py::module_& parent);
void defineReadings(py::module_& airspace);
void defineAircraft(py::module_& airspace);
void defineSky(py::module_& airspace);
void defineArrays(py::module_& airspace);
void defineHtml(py::module_& module);

} // namespace quorvel::modes::python
