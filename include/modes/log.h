// SPDX-License-Identifier: MIT
#pragma once

#include <modes/export.h>

#include <atomic>
#include <cstdint>
#include <string>

namespace quorvel::modes {

class LogHandler;

/// The process-wide log of the library.
///
/// Lines read "[" + module name, padded to the widest name shown so far and at least 10 + "] " + text. They
/// go to the installed `LogHandler`, or to `std::clog` with a newline and a flush where there is none.
///
/// Decoders and trackers driven from different threads share nothing but this log; its level, handler and
/// column width may be read and written from any of them. The handler is called on the thread that logs.
class TREVALLO_EXPORT Log {
public:
    /// How much a line matters.
    enum Level : std::uint32_t {
        Debug = 0,   ///< routine events
        Info = 1,    ///< initialisation, repairs and changes
        Warning = 2, ///< unsupported input
        Error = 3,   ///< malformed payloads
    };

    /// Emits one line, unless `level` is below the show level. What the handler throws passes to the caller.
    static void log(Level level, std::string const& module, std::string const& text);

    /// As above with printf-style arguments; the text is cut at 1023 characters. It is formatted whether the
    /// line is emitted or not.
    TREVALLO_PRINTF(3, 4) static void log(Level level, std::string const& module, char const* format, ...);

    /// Sets the lowest level that is emitted, for the whole process. `Info` at the start.
    static void setShowLevel(Level level);

    /// Installs the sink for all lines. The handler stays the caller's and must live as long as it is
    /// installed; a null pointer restores the output to `std::clog`.
    static void setLogHandler(LogHandler* handler);

private:
    friend bool logShows(Level level) noexcept;

    TREVALLO_HIDDEN static std::atomic<Level> _showLevel;
    TREVALLO_HIDDEN static std::atomic<LogHandler*> _logHandler;
};

/// Sink for the log lines of the library, to be derived from by the host, which owns it and deletes it itself
/// (through its own type: there is no virtual destructor).
class TREVALLO_EXPORT LogHandler {
public:
    /// Takes one complete line, without a line end.
    virtual void handle(Log::Level level, std::string const& line) = 0;
};

} // namespace quorvel::modes
