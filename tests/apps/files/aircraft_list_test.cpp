// SPDX-License-Identifier: MIT
#include "files/aircraft_list.h"

#include "files/host_error.h"

#include "support/temporary_folder.h"

#include <gmock/gmock.h>

using namespace quorvel;
using files::AircraftList;

namespace {

std::string described(AircraftList const& list, std::uint32_t address) {
    auto const found = list.find(address);
    if (!found) return "not listed";
    return std::string(found->registration) + "|" + std::string(found->type) + "|" + std::string(found->operatorName);
}

} // namespace

TEST(AircraftList, FindsColumnsByTheNamesInTheHeadLine) {
    struct Case {
        char const* layout;
        char const* text;
    };
    Case const cases[] = {
        {"common", "icao24,registration,typecode,operator\n4ca123,EI-ABC,A320,Ryanair\n"},
        {"single quotes", "'icao24','timestamp','operator','registration','typecode'\n"
                          "'4ca123','2024-01-01','Ryanair','EI-ABC','A320'\n"},
        {"capitals and tabs", "ModeS\tRegistration\tICAOTypeCode\tRegisteredOwners\n4CA123\tEI-ABC\tA320\tRyanair\n"},
        {"short names", "hex;t;r;ownOp\r\n4CA123;A320;EI-ABC;Ryanair\r\n"},
        {"best name first", "type,hex,reg,owner,typecode,operator\nL2J,4CA123,EI-ABC,Bank,A320,Ryanair\n"},
        {"byte order mark", "\xEF\xBB\xBFhex,reg,type,airline\n4CA123,EI-ABC,A320,Ryanair\n"},
    };
    for (auto const& each : cases)
        EXPECT_EQ(described(AircraftList(each.text), 0x4CA123), "EI-ABC|A320|Ryanair") << each.layout;
}

TEST(AircraftList, FindsColumnsByTheirPlaceWithoutAHeadLine) {
    EXPECT_EQ(described(AircraftList("4CA123,EI-ABC,A320,Ryanair\n"), 0x4CA123), "EI-ABC|A320|Ryanair");
    EXPECT_EQ(described(AircraftList("4ca123;EI-ABC;A320;10;AIRBUS A-320;;\n"), 0x4CA123), "EI-ABC|A320|")
        << "what follows are flags";
    EXPECT_EQ(described(AircraftList("4CA123"), 0x4CA123), "||") << "no more is known";
}

TEST(AircraftList, KeepsSeparatorsInQuotes) {
    EXPECT_EQ(described(AircraftList("hex,operator\n4CA123,\"Smith, Jones \"\n"), 0x4CA123), "||Smith, Jones");
    EXPECT_EQ(described(AircraftList("4CA123,EI-A,\"B\"\"7\"\"38\",\"ACME \"\"X\"\", Ltd\"\n"), 0x4CA123),
        "EI-A|B\"7\"38|ACME \"X\", Ltd")
        << "a doubled quote is one";
    EXPECT_EQ(described(AircraftList("hex,operator\n4CA123,O'Leary\n"), 0x4CA123), "||O'Leary") << "a quote within";
}

TEST(AircraftList, LeavesOutLinesWithoutAnAddress) {
    AircraftList const list("hex,reg\n\n# comment\n4CA12,EI-A\n4CA1234,EI-B\n-CA123,EI-C\nXYZXYZ,EI-D\n4CA124,EI-E");
    EXPECT_EQ(list.size(), 1U);
    EXPECT_EQ(described(list, 0x4CA124), "EI-E||");
    EXPECT_EQ(described(list, 0x4CA12), "not listed");
}

TEST(AircraftList, TakesTheLaterOfTwoLinesWithOneAddress) {
    AircraftList const list("hex,reg\n4CA124,LATER\n4CA123,FIRST\n4CA123,SECOND\n");
    EXPECT_EQ(described(list, 0x4CA123), "SECOND||");
    EXPECT_EQ(described(list, 0x4CA124), "LATER||");
}

TEST(AircraftList, ReadsWhateverItIsGiven) {
    for (std::string const text : {"", "\n", ",", "\"", "hex", "hex\n", "\xFF\x00\xFE;;;", "a\0b,c"})
        EXPECT_EQ(AircraftList(text).size(), 0U);
    EXPECT_EQ(described(AircraftList(std::string("4CA123,EI\0X,A320,R", 18)), 0x4CA123), "EI|A320|R");
}

TEST(AircraftList, IsReadFromAFile) {
    modes::test::TemporaryFolder folder;
    auto const good = folder.write("list.csv", "hex,reg\n4CA123,EI-ABC\n");
    EXPECT_EQ(described(files::readAircraftList(good), 0x4CA123), "EI-ABC||");
    auto const empty = folder.write("empty.csv", "nothing of use\n");
    EXPECT_THROW(files::readAircraftList(empty), files::HostError);
    EXPECT_THROW(files::readAircraftList(folder.path("missing.csv")), files::HostError);
    auto const cut = folder.write("cut.csv.gz", std::string("\x1F\x8B\x08\0\0\0\0\0\0\x03", 10));
    EXPECT_THROW(files::readAircraftList(cut), files::HostError);
}
