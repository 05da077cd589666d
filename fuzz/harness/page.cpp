// SPDX-License-Identifier: MIT
#include "harness/page.h"

#include <modes/adsb_target_report.h>

#include "harness/require.h"

#include <map>
#include <string_view>
#include <vector>

namespace quorvel::fuzz {

namespace {

bool isVoid(std::string const& tag) { return tag == "br" || tag == "!DOCTYPE"; }

// Counts the elements of a page and requires that each is closed where it should be.
std::map<std::string, unsigned> elementsOf(std::string_view page) {
    std::map<std::string, unsigned> counts;
    std::vector<std::string> open;
    for (auto at = page.find('<'); at != std::string_view::npos; at = page.find('<', at + 1)) {
        bool const closes = page[at + 1] == '/';
        auto const begin = at + (closes ? 2 : 1);
        std::string const tag(page.substr(begin, page.find_first_of(" >", begin) - begin));
        if (closes) {
            require(!open.empty() && open.back() == tag, "an element is closed where it should be");
            open.pop_back();
        } else {
            ++counts[tag];
            if (!isVoid(tag)) open.push_back(tag);
        }
    }
    require(open.empty(), "every element is closed");
    return counts;
}

void checkFrameOf(std::string_view page) {
    require(page.starts_with("<!DOCTYPE html>\n<html lang=\"en\">\n"), "a page starts as one");
    require(page.ends_with("</body>\n</html>\n"), "a page ends as one");
}

void checkTime(std::string const& text, unsigned long long time) {
    if (time == 0) return require(text.empty(), "no time has no text");
    require(text.size() >= 24 && text.back() == 'Z', "a time is a date and a time of day");
}

} // namespace

void checkPage(modes::ADSBTargetReport const& report) {
    auto const page = report.toHtml("table { color: black; }");
    checkFrameOf(page);
    auto counts = elementsOf(page);
    require(counts["table"] == 4 && counts["h2"] == 4 && counts["br"] == 5, "a page has four tables");
    require(counts["tr"] == 4 + 2 + 8 + 8 + 9, "every item has a row");
    require(counts["th"] == 4 + 5 + 4 + 5, "every column has a heading");
    require(counts["td"] == 2 * 4 + 8 * 5 + 8 * 4 + 9 * 5, "every row has its cells");
}

void checkPageOfAnything(modes::ADSBTargetReport const& report, std::string const& style) {
    auto const page = report.toHtml(style);
    checkFrameOf(page);
    require(page.find(style) != std::string::npos, "the style stands in the page as it is");
    require(page.find(report.callsign()) != std::string::npos || !report.callsignValid(),
        "the callsign stands in the page as it is");
    require(report.icaoAddressString().size() >= 6 || !report.icaoAddressValid(), "an address has six places");
    require(report.squawkString().size() >= 4, "a squawk has four digits");
    require(report.positionString() == report.latitudeString() + report.longitudeString(),
        "a position is latitude and longitude");
    checkTime(modes::ADSBTargetReport::timeToString(report.lastUpdate()), report.lastUpdate());
}

} // namespace quorvel::fuzz
