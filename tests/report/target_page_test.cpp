// SPDX-License-Identifier: MIT
#include <modes/adsb_target_report.h>

#include <gtest/gtest.h>

#include <vector>

using namespace quorvel::modes;

namespace {

using Row = std::vector<std::string>;

struct Section {
    std::string title;
    bool hasChanges;
    std::vector<Row> rows;
};

std::string rowText(std::string const& tag, Row const& cells) {
    std::string text = "      <tr>\n";
    for (auto const& cell : cells) text += "        <" + tag + ">" + cell + "</" + tag + ">\n";
    return text + "      </tr>\n";
}

// The page that must come out, written line by line.
std::string page(std::string const& style, std::vector<Section> const& sections) {
    std::string text = "<!DOCTYPE html>\n"
                       "<html lang=\"en\">\n"
                       "  <head>\n"
                       "    <title>ADS-B Target Report</title>\n"
                       "    <style type=\"text/css\">" +
                       style +
                       "</style>\n"
                       "  </head>\n"
                       "  <body>\n"
                       "    <h1>ADS-B Target Report</h1>\n"
                       "    <br>\n";
    for (auto const& section : sections) {
        text += "    <h2>" + section.title + "</h2>\n    <br>\n";
        text += "    <table border=\"1\" cellspacing=\"0\" class=\"general_table\">\n";
        text += rowText("th", section.hasChanges ? Row{"Item", "Valid", "Value", "Last Change", "Last Update"}
                                                 : Row{"Item", "Valid", "Value", "Last Update"});
        for (auto const& row : section.rows) text += rowText("td", row);
        text += "    </table>\n";
    }
    return text + "  </body>\n</html>\n";
}

Row invalid(std::string const& label, bool hasChange) {
    return hasChange ? Row{label, "FALSE", "", "", ""} : Row{label, "FALSE", "", ""};
}

std::vector<Row> invalidRows(std::vector<std::string> const& labels, bool hasChange) {
    std::vector<Row> rows;
    for (auto const& label : labels) rows.push_back(invalid(label, hasChange));
    return rows;
}

std::vector<Section> emptySections() {
    auto staticRows =
        invalidRows({"Callsign", "Squawk", "Emitter Category", "Ground Status", "SPI", "Alert Status"}, true);
    staticRows.push_back({"MOPS Version", "TRUE", "MOPS V0", "", ""});
    staticRows.push_back({"MOPS Certainty ", "TRUE", "ASSUMED", "", ""});
    return {
        {"Identification", false, {{"Track Number", "FALSE", "0", ""}, {"ICAO Address", "FALSE", "", ""}}},
        {"Static", true, staticRows},
        {"Tectical", false,
            invalidRows({"Position", "Latitude", "Longitude", "Braometric Altitude", "Ground Speed", "Heading",
                            "Barometric Vertical Rate", "Signal Amplitude"},
                false)},
        {"Quality Indicators", true,
            invalidRows({"NUCp", "NUCr", "NIC", "NICsuppA", "NICsuppB", "NICsuppC", "PIC", "NACp", "NUCr"}, true)},
    };
}

// Time number n, and how it is shown.
unsigned long long time(unsigned n) { return 1'714'566'800'000 + n * 1000ULL; }
std::string shown(unsigned n) { return "2024-05-01T12:33:" + std::to_string(20 + n) + ".000Z"; }

// Every item valid, each time another one: changes 1 to 14, updates 15 to 39.
ADSBTargetReport fullReport() {
    ADSBTargetReport r;
    r.setTrackId(17);
    r.setLastUpdate(time(0));
    r.setIcaoAddress(0x4840D6);
    r.setIcaoAddressValid(true);
    r.setCallsign("KLM<&23 ");
    r.setCallsignLastChange(time(1));
    r.setCallsignLastUpdate(time(15));
    r.setSquawk(4032);
    r.setSquawkLastChange(time(2));
    r.setSquawkLastUpdate(time(16));
    r.setEmitterCategory(3);
    r.setEmitterCategoryLastChange(time(3));
    r.setEmitterCategoryLastUpdate(time(17));
    r.setGroundStatus(true);
    r.setGroundStatusLastChange(time(4));
    r.setGroundStatusLastUpdate(time(18));
    r.setSpiStatus(true);
    r.setSpiStatusValid(true);
    r.setSpiStatusLastChange(time(5));
    r.setSpiStatusLastUpdate(time(19));
    r.setAlertStatus(true);
    r.setAlertStatusValid(true);
    r.setAlertStatusLastChange(time(6));
    r.setAlertStatusLastUpdate(time(20));
    r.setMopsVersion(MOPS_V2);
    r.setMopsVersionConfirmed(true);
    r.setMopsVersionLastChange(time(7));
    r.setMopsVersionLastUpdate(time(21));
    r.setPosition(51.5, -0.425);
    r.setPositionLastUpdate(time(22));
    r.setAltitudeBaro(-975);
    r.setAltitudeBaroLastUpdate(time(23));
    r.setGroundSpeed(451.25);
    r.setGroundSpeedLastUpdate(time(24));
    r.setHeading(0.1);
    r.setHeadingLastUpdate(time(25));
    r.setVerticalRateBaro(-64);
    r.setVerticalRateBaroLastUpdate(time(26));
    r.setSignalAmplitude(200);
    r.setSignalAmplitudeLastUpdate(time(27));
    r.setNUCp(7);
    r.setNUCpValid(true);
    r.setNUCpLastChange(time(8));
    r.setNUCpLastUpdate(time(28));
    r.setNUCr(2);
    r.setNUCrValid(true);
    r.setNUCrLastChange(time(9));
    r.setNUCrLastUpdate(time(29));
    r.setNIC(8);
    r.setNICValid(true);
    r.setNICLastChange(time(10));
    r.setNICLastUpdate(time(30));
    r.setNICSuppA(true);
    r.setNICSuppAValid(true);
    r.setNICSuppALastUpdate(time(31));
    r.setNICSuppB(false);
    r.setNICSuppBValid(true);
    r.setNICSuppBLastUpdate(time(32));
    r.setNICSuppC(true);
    r.setNICSuppCValid(true);
    r.setNICSuppCLastUpdate(time(33));
    r.setPIC(11);
    r.setPICValid(true);
    r.setPICLastChange(time(11));
    r.setPICLastUpdate(time(34));
    r.setNACp(9);
    r.setNACpValid(true);
    r.setNACpLastChange(time(12));
    r.setNACpLastUpdate(time(35));
    r.setSIL(3);
    r.setSILValid(true);
    r.setSILLastChange(time(13));
    r.setSILLastUpdate(time(36));
    return r;
}

std::vector<Section> fullSections() {
    return {
        {"Identification", false,
            {{"Track Number", "TRUE", "17", shown(0)}, {"ICAO Address", "TRUE", "4840D6", shown(0)}}},
        {"Static", true,
            {{"Callsign", "TRUE", "KLM<&23 ", shown(1), shown(15)},
                {"Squawk", "TRUE", "7700", "", shown(16)}, // its change is never shown
                {"Emitter Category", "TRUE", "3", shown(3), shown(17)},
                {"Ground Status", "TRUE", "GND", shown(4), shown(18)}, {"SPI", "TRUE", "SPI", shown(5), shown(19)},
                {"Alert Status", "TRUE", "ALERT", shown(6), shown(20)},
                {"MOPS Version", "TRUE", "MOPS V2", shown(7), shown(21)},
                {"MOPS Certainty ", "TRUE", "CONFIRMED", shown(7), shown(21)}}},
        {"Tectical", false,
            {{"Position", "TRUE", "513000N0002530W", shown(22)}, {"Latitude", "TRUE", "51.500000", shown(22)},
                {"Longitude", "TRUE", "-0.425000", shown(22)}, {"Braometric Altitude", "TRUE", "-975", shown(23)},
                {"Ground Speed", "TRUE", "451.250000", shown(24)}, {"Heading", "TRUE", "0.100000", shown(25)},
                {"Barometric Vertical Rate", "TRUE", "-64", shown(26)},
                {"Signal Amplitude", "TRUE", "200", shown(27)}}},
        {"Quality Indicators", true,
            {{"NUCp", "TRUE", "7", shown(8), shown(28)}, {"NUCr", "TRUE", "2", shown(9), shown(29)},
                {"NIC", "TRUE", "8", shown(10), shown(30)}, {"NICsuppA", "TRUE", "1", "", shown(31)},
                {"NICsuppB", "TRUE", "0", "", shown(32)}, {"NICsuppC", "TRUE", "1", "", shown(33)},
                {"PIC", "TRUE", "11", shown(11), shown(34)}, {"NACp", "TRUE", "9", shown(12), shown(35)},
                {"NUCr", "TRUE", "3", shown(13), shown(36)}}}, // the SIL
    };
}

bool contains(std::string const& text, std::string const& part) { return text.find(part) != std::string::npos; }

} // namespace

TEST(TargetPage, OfAnEmptyReportShowsEveryItemWithoutAValue) {
    EXPECT_EQ(ADSBTargetReport().toHtml(""), page("", emptySections()));
}

TEST(TargetPage, OfAFullReportShowsEveryValueAndTime) {
    EXPECT_EQ(fullReport().toHtml("td { color: red }"), page("td { color: red }", fullSections()));
}

TEST(TargetPage, PutsTheStyleIntoTheHeadAsItIs) {
    auto const html = ADSBTargetReport().toHtml("a > b { content: \"<&>\" }\n");
    EXPECT_TRUE(contains(html, "<style type=\"text/css\">a > b { content: \"<&>\" }\n</style>"));
}

TEST(TargetPage, ShowsTheOtherNames) {
    auto report = fullReport();
    report.setGroundStatus(false);
    report.setSpiStatus(false);
    report.setAlertStatus(false);
    report.setMopsVersionConfirmed(false);
    auto html = report.toHtml("");
    EXPECT_TRUE(contains(html, "<td>Ground Status</td>\n        <td>TRUE</td>\n        <td>AIR</td>"));
    EXPECT_TRUE(contains(html, "<td>SPI</td>\n        <td>TRUE</td>\n        <td>NO SPI</td>"));
    EXPECT_TRUE(contains(html, "<td>Alert Status</td>\n        <td>TRUE</td>\n        <td>NO ALERT</td>"));
    EXPECT_TRUE(contains(html, "<td>MOPS Certainty </td>\n        <td>TRUE</td>\n        <td>ASSUMED</td>"));
    for (auto const& [version, name] :
        {std::pair{0U, "MOPS V0"}, {1U, "MOPS V1"}, {2U, "MOPS V2"}, {3U, "UNKNOWN"}, {9U, "UNKNOWN"}}) {
        report.setMopsVersion(static_cast<MOPSVersion>(version));
        EXPECT_TRUE(contains(report.toHtml(""),
            "<td>MOPS Version</td>\n        <td>TRUE</td>\n        <td>" + std::string(name) + "</td>"));
    }
}

// Without a valid address the report itself is not valid; number and times are shown all the same.
TEST(TargetPage, ShowsTheTrackNumberOfAnInvalidReport) {
    auto report = fullReport();
    report.setIcaoAddressValid(false);
    report.setTrackIdValid(true);
    EXPECT_TRUE(contains(report.toHtml(""),
        "<td>Track Number</td>\n        <td>FALSE</td>\n        <td>17</td>\n        <td>" + shown(0)));
    EXPECT_TRUE(contains(report.toHtml(""),
        "<td>ICAO Address</td>\n        <td>FALSE</td>\n        <td></td>\n        <td>" + shown(0)));
}

TEST(TargetPage, HidesValueAndTimesOfAnInvalidItem) {
    auto report = fullReport();
    report.setSquawkValid(false);
    EXPECT_TRUE(contains(report.toHtml(""),
        "<td>Squawk</td>\n        <td>FALSE</td>\n        <td></td>\n        <td></td>\n        <td></td>"));
}
