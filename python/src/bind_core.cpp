// SPDX-License-Identifier: MIT
#include "binding.h"

namespace quorvel::modes::python {

namespace {

/// What a Python host derives from, in place of the library's own class: that one is called by threads that
/// know nothing of Python.
class HandlerBase {};

/// The one handler that is ever installed. It hands lines to a Python callable, whatever thread they come
/// from, and what that raises passes through the library to the caller.
class CallableHandler : public LogHandler {
public:
    /// With the interpreter's lock, as the next.
    void setCallable(py::object callable) { _callable = std::move(callable); }

    void handle(Log::Level level, std::string const& line) override {
        py::gil_scoped_acquire const lock;
        auto const callable = _callable; // it may put another in its place
        if (!callable) return;           // taken off while the line was on its way
        // a line may quote whatever was received
        auto const text = py::reinterpret_steal<py::object>(
            PyUnicode_DecodeUTF8(line.data(), static_cast<Py_ssize_t>(line.size()), "backslashreplace"));
        if (!text) throw py::error_already_set();
        callable(level, text);
    }

private:
    py::object _callable;
};

// Lives as long as the process: another thread may be on its way into it whenever it is taken off.
CallableHandler& handler() {
    static auto* const instance = new CallableHandler;
    return *instance;
}

void setLogHandler(py::object const& sink) {
    if (sink.is_none()) {
        Log::setLogHandler(nullptr);
        handler().setCallable(py::object());
        return;
    }
    auto callable = py::isinstance<HandlerBase>(sink) ? py::object(sink.attr("handle")) : sink;
    if (!PyCallable_Check(callable.ptr())) throw py::type_error("a log handler is a callable, a LogHandler or None");
    handler().setCallable(std::move(callable));
    Log::setLogHandler(&handler());
}

void defineLog(py::module_& module) {
    Class<Log> log(module, TREVALLO_CLASS(Log));
    defineEnumeration<Log::Level>(log);
    Class<HandlerBase>(module, TREVALLO_CLASS(LogHandler))
        .constructor(py::init<>())
        .method(
            TREVALLO_NAME(LogHandler, handle),
            [](HandlerBase&, Log::Level, py::str const&) {
                PyErr_SetString(PyExc_NotImplementedError, "a log handler takes lines in its handle()");
                throw py::error_already_set();
            },
            "level"_a, "line"_a);
    log.staticMethod(TREVALLO_NAME(Log, log),
           py::overload_cast<Log::Level, std::string const&, std::string const&>(&Log::log), "level"_a, "module"_a,
           "text"_a)
        .staticMethod(TREVALLO_MEMBER(Log, setShowLevel), "level"_a)
        .staticMethod(TREVALLO_NAME(Log, setLogHandler), &setLogHandler, "handler"_a);
    // once the interpreter shuts down, no handler can be called
    py::module_::import("atexit").attr("register")(py::cpp_function([] { setLogHandler(py::none()); }));
}

MOPSVersion versionOf(std::string const& text) {
    try {
        auto version = MOPS_UNKNOWN;
        ConvMOPSVersion(text, version);
        return version;
    } catch (std::logic_error const&) {
        throw py::value_error("not a version number: '" + text + "'");
    }
}

void defineFunctions(py::module_& module) {
    auto const function = [&](Name const& name, auto const& callable, auto const&... extra) {
        module.def(name.name, callable, name.text, extra...);
    };
    function(TREVALLO_FUNCTION(ConvMOPSVersion), &versionOf, "text"_a);
    function(TREVALLO_FUNCTION(cprModFunction), &cprModFunction, "a"_a, "b"_a);
    function(TREVALLO_FUNCTION(cprNLFunction), &cprNLFunction, "lat"_a);
    function(TREVALLO_FUNCTION(cprNFunction), &cprNFunction, "lat"_a, "i"_a);
    function(TREVALLO_FUNCTION(cprDlonFunction), &cprDlonFunction, "lat"_a, "i"_a);
}

} // namespace

void defineCore(py::module_& module) {
    defineLog(module);
    defineEnumeration<MOPSVersion>(module);
    defineFunctions(module);

    Class<Trevallo>(module, TREVALLO_CLASS(Trevallo))
        .constructor(py::init<>())
        .property(TREVALLO_MEMBER(Trevallo, version))
        .property(TREVALLO_MEMBER(Trevallo, build))
        .property(TREVALLO_MEMBER(Trevallo, about))
        .property(TREVALLO_MEMBER(Trevallo, contact));

    Class<ADSBServiceStatus> status(module, TREVALLO_CLASS(ADSBServiceStatus));
    defineEnumeration<ADSBServiceStatus::ReportMode>(status);
#define ITEM(reader, setter) TREVALLO_MEMBER(ADSBServiceStatus, reader), TREVALLO_MEMBER(ADSBServiceStatus, setter)
    status.constructor(py::init<>())
        .property(ITEM(sac, setSac))
        .property(ITEM(sic, setSic))
        .property(ITEM(serviceId, setServiceId))
        .property(ITEM(reportMode, setReportMode))
        .property(ITEM(reportPeriod, setReportPeriod));
#undef ITEM
}

} // namespace quorvel::modes::python
