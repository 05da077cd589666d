// SPDX-License-Identifier: MIT
#include "report/utc_text.h"

#include "core/text.h"

#include <ctime>

namespace quorvel::modes {

namespace {

// gmtime in its form without shared state.
bool brokenDown(std::time_t seconds, std::tm& time) {
#ifdef _WIN32
    return gmtime_s(&time, &seconds) == 0;
#else
    return gmtime_r(&seconds, &time) != nullptr;
#endif
}

} // namespace

std::string utcText(unsigned long long milliseconds) {
    std::tm time{};
    if (!brokenDown(static_cast<std::time_t>(milliseconds / 1000), time)) return {};
    return formatted("%lld-%02d-%02dT%02d:%02d:%02d.%03uZ", time.tm_year + 1900LL, time.tm_mon + 1,
                     time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec,
                     static_cast<unsigned>(milliseconds % 1000));
}

} // namespace quorvel::modes
