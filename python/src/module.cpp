// SPDX-License-Identifier: MIT
#include "binding.h"

namespace quorvel::modes::python {

namespace {

void define(py::module_& module) {
    module.doc() = "Decoder and tracker for 1090 MHz aircraft transponder replies.";
    // Classes say that they are of the package, not of this module inside it.
    auto const name = module.attr("__name__");
    module.attr("__name__") = "trevallo";
    defineCore(module);
    defineEncapsulation(module);
    defineFields(module);
    defineReplies(module);
    defineMessages(module);
    defineReport(module);
    defineTarget(module);
    defineTracker(module);
    defineStream(module);
    defineAirspace(module);
    defineHtml(module);
    module.attr("__name__") = name;
    module.attr("__version__") = Trevallo().version();
}

} // namespace

} // namespace quorvel::modes::python

PYBIND11_MODULE(_trevallo, module) { quorvel::modes::python::define(module); }
