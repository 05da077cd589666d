// SPDX-License-Identifier: MIT
#pragma once

#include <modes/export.h>

#include <string>

namespace quorvel::modes {

/// Identity of the library that a host runs with.
class TREVALLO_EXPORT Trevallo {
public:
    std::string version(); ///< "MAJOR.MINOR.PATCH", for example "1.0.2"
    std::string build();   ///< short hash of the revision, 7 characters; "0000000" for a build outside a git checkout
    std::string about();   ///< one line on where the library comes from
    std::string contact(); ///< web address of the makers
};

} // namespace quorvel::modes
