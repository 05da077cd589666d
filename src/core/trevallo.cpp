// SPDX-License-Identifier: MIT
#include <modes/trevallo.h>

#include "build_id.h"
#include "core/version.h"

#include <sstream>

namespace quorvel::modes {

std::string Trevallo::version() {
    std::ostringstream text;
    text << kVersionMajor << "." << kVersionMinor << "." << kVersionPatch;
    return text.str();
}

std::string Trevallo::build() { return TREVALLO_BUILD_ID; }

std::string Trevallo::about() {
    return "trevallo, decoder and tracker for 1090 MHz transponder replies, by the trevallo authors";
}

std::string Trevallo::contact() { return "https://quorvel.example/trevallo"; }

} // namespace quorvel::modes
