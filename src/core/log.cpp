// SPDX-License-Identifier: MIT
#include <modes/log.h>

#include "core/log_if_shown.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <iostream>

namespace quorvel::modes {

namespace {

constexpr std::size_t kFormatBufferSize = 1024; // a formatted text is cut at one character less
constexpr auto kRelaxed = std::memory_order_relaxed;

std::atomic<std::uint64_t> moduleWidth{10};

// Widens the module column to `length` if it is narrower, and returns its width. It never narrows again.
std::size_t widenModuleColumn(std::uint64_t length) {
    auto width = moduleWidth.load(kRelaxed);
    while (width < length && !moduleWidth.compare_exchange_weak(width, length, kRelaxed)) {
    }
    return static_cast<std::size_t>(std::max(width, length));
}

TREVALLO_PRINTF(1, 0) std::string formattedText(char const* format, va_list arguments) {
    char text[kFormatBufferSize] = "";
    std::vsnprintf(text, sizeof text, format, arguments);
    return text;
}

} // namespace

std::atomic<Log::Level> Log::_showLevel{Log::Info};
std::atomic<LogHandler*> Log::_logHandler{nullptr};

bool logShows(Log::Level level) noexcept { return level >= Log::_showLevel.load(kRelaxed); }

void Log::log(Level level, std::string const& module, std::string const& text) {
    if (!logShows(level)) return; // the column widens for lines that are seen only

    std::string name = module;
    name.resize(widenModuleColumn(module.size()), ' ');
    std::string const line = "[" + name + "] " + text;

    if (auto* handler = _logHandler.load(kRelaxed)) {
        handler->handle(level, line);
    } else {
        std::clog << line << std::endl;
    }
}

void Log::log(Level level, std::string const& module, char const* format, ...) {
    // Deliberate and visible to hosts (%n): suppressed lines are formatted, too.
    va_list arguments;
    va_start(arguments, format);
    auto const text = formattedText(format, arguments);
    va_end(arguments);
    log(level, module, text);
}

void logIfShown(Log::Level level, std::string const& module, char const* format, ...) {
    if (!logShows(level)) return;
    va_list arguments;
    va_start(arguments, format);
    auto const text = formattedText(format, arguments);
    va_end(arguments);
    Log::log(level, module, text);
}

void Log::setShowLevel(Level level) { _showLevel.store(level, kRelaxed); }

void Log::setLogHandler(LogHandler* handler) { _logHandler.store(handler, kRelaxed); }

} // namespace quorvel::modes
