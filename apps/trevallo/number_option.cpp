// SPDX-License-Identifier: MIT
#include "trevallo/number_option.h"

#include <CLI/CLI.hpp>

#include <limits>
#include <sstream>

namespace quorvel::program {

std::function<std::string(std::string const&)> checkedNumber(double least, double most) {
    return [least, most](std::string const& text) {
        double number = 0;
        if (CLI::detail::lexical_cast(text, number) && number >= least && number <= most) return std::string();
        std::ostringstream range;
        range.precision(std::numeric_limits<double>::digits10);
        range << "it is a number from " << least << " to " << most;
        return range.str();
    };
}

} // namespace quorvel::program
