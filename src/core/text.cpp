// SPDX-License-Identifier: MIT
#include "core/text.h"

#include <cstdarg>
#include <cstdio>

namespace quorvel::modes {

std::string formatted(char const* format, ...) {
    char text[64] = "";
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return text;
}

} // namespace quorvel::modes
