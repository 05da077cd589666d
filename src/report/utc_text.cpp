// SPDX-License-Identifier: MIT
#include "report/utc_text.h"

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

// A page shows forty times: the digits are written one by one rather than by a format.
void appendNumber(std::string& text, char separator, int number, std::size_t width) {
    text += separator;
    text.append(width, '0');
    for (auto digit = text.rbegin(); number > 0; ++digit, number /= 10) {
        *digit = static_cast<char>('0' + number % 10);
    }
}

} // namespace

std::string utcText(unsigned long long milliseconds) {
    std::tm time{};
    if (!brokenDown(static_cast<std::time_t>(milliseconds / 1000), time)) return {};
    auto text = std::to_string(time.tm_year + 1900LL);
    appendNumber(text, '-', time.tm_mon + 1, 2);
    appendNumber(text, '-', time.tm_mday, 2);
    appendNumber(text, 'T', time.tm_hour, 2);
    appendNumber(text, ':', time.tm_min, 2);
    appendNumber(text, ':', time.tm_sec, 2);
    appendNumber(text, '.', static_cast<int>(milliseconds % 1000), 3);
    text += 'Z';
    return text;
}

} // namespace quorvel::modes
