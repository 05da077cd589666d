// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

namespace quorvel::host {

/// For CLI11's checks: empty for a number from `least` to `most`, an explanation for anything else. "nan",
/// which is neither less nor more than any number, is none.
std::function<std::string(std::string const&)> checkedNumber(double least, double most);

} // namespace quorvel::host
