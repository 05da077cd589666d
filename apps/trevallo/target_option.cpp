// SPDX-License-Identifier: MIT
#include "trevallo/target_option.h"

#include "net/schemed_name.h"
#include "net/sinks.h"

namespace quorvel::program {

namespace {

std::string checkedPath(std::string const& target, std::string const& what) {
    if (target == "-") return "it cannot go to standard output: name a " + what;
    if (net::isPort(target) || !net::schemedName(target).scheme.empty())
        return "it cannot go to the network: name a " + what;
    return "";
}

} // namespace

std::string checkedFile(std::string const& target) { return checkedPath(target, "file"); }

std::string checkedFolder(std::string const& target) { return checkedPath(target, "folder"); }

std::string checkedFileOrPort(std::string const& target) {
    return net::isPort(target) ? "" : checkedPath(target, "file, or a port like :8080");
}

std::string checkedFileOrStandardOutput(std::string const& target) { return target == "-" ? "" : checkedFile(target); }

} // namespace quorvel::program
