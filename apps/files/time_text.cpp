// SPDX-License-Identifier: MIT
#include "files/time_text.h"

#include <charconv>
#include <chrono>
#include <string_view>

namespace quorvel::files {

namespace {

// A fixed number of digits at the start of `text`, followed by `end`.
std::optional<int> number(std::string_view& text, std::size_t digits, std::string_view end) {
    if (text.size() < digits + end.size() || text.substr(digits, end.size()) != end) return {};
    int value = 0;
    auto const read = std::from_chars(text.data(), text.data() + digits, value);
    if (read.ptr != text.data() + digits || value < 0 || text.front() == '-') return {};
    text.remove_prefix(digits + end.size());
    return value;
}

} // namespace

std::optional<airspace::TimeMs> parseTime(std::string const& text) {
    using namespace std::chrono;
    std::string_view rest = text;
    auto const year = number(rest, 4, "-");
    auto const month = year ? number(rest, 2, "-") : std::nullopt;
    auto const day = month ? number(rest, 2, "") : std::nullopt;
    if (!day) return {};
    year_month_day const date{std::chrono::year(*year), std::chrono::month(static_cast<unsigned>(*month)),
        std::chrono::day(static_cast<unsigned>(*day))};
    if (!date.ok() || *year < 1970) return {};
    auto const midnight = duration_cast<milliseconds>(sys_days(date).time_since_epoch()).count();
    if (rest.empty()) return static_cast<airspace::TimeMs>(midnight);

    if (rest.front() != 'T') return {};
    rest.remove_prefix(1);
    auto const hour = number(rest, 2, ":");
    auto const minute = hour ? number(rest, 2, ":") : std::nullopt;
    auto const second = minute ? number(rest, 2, "") : std::nullopt;
    if (!second || *hour > 23 || *minute > 59 || *second > 59) return {};
    int fraction = 0;
    if (!rest.empty() && rest.front() == '.') {
        rest.remove_prefix(1);
        auto const digits = number(rest, 3, "Z");
        if (!digits || !rest.empty()) return {};
        fraction = *digits;
    } else if (rest != "Z") {
        return {};
    }
    return static_cast<airspace::TimeMs>(midnight) +
           static_cast<airspace::TimeMs>(((*hour * 60 + *minute) * 60 + *second) * 1000 + fraction);
}

airspace::TimeMs hostTime() {
    using namespace std::chrono;
    return static_cast<airspace::TimeMs>(duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count());
}

} // namespace quorvel::files
