// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

namespace quorvel::program {

/// For CLI11's checks: empty for a number from `least` to `most`, an explanation for anything else. "nan" is not
/// accepted.
std::function<std::string(std::string const&)> checkedNumber(double least, double most);

} // namespace quorvel::program
