// SPDX-License-Identifier: MIT
#include <modes/modes_encapsulation.h>

#include "support/bytes.h"
#include "support/captured_log.h"

#include <gtest/gtest.h>

using namespace quorvel::modes;
using Format = ModeSEncapsulation::Format;

TEST(ModeSEncapsulation, StartsEmptyWithoutATime) {
    ModeSEncapsulation const record;
    EXPECT_EQ(record.timeStamp(), 0U);
    EXPECT_EQ(record.data(), "");
}

TEST(ModeSEncapsulation, KeepsWhatItIsGiven) {
    ModeSEncapsulation record;
    record.setTimeStamp(1'714'566'896'789);
    record.setData(std::string("a\0b", 3));
    EXPECT_EQ(record.timeStamp(), 1'714'566'896'789U);
    EXPECT_EQ(record.data(), std::string("a\0b", 3));
}

TEST(ModeSEncapsulation, NamesItsFormats) {
    struct {
        unsigned format;
        char const* identifier;
        char const* name;
    } const cases[] = {{0, "unknown", "Unknown"}, {1, "hex", "Raw Hex"}, {2, "bin", "Raw Bin"}, {3, "avr", "AVR"},
        {4, "beast", "Beast"}, {5, "unknown", "Unknown"}, {99, "unknown", "Unknown"},
        {0xFFFFFFFF, "unknown", "Unknown"}};
    for (auto const& [format, identifier, name] : cases) {
        EXPECT_EQ(ModeSEncapsulation::identifier(static_cast<Format>(format)), identifier);
        EXPECT_EQ(ModeSEncapsulation::name(static_cast<Format>(format)), name);
    }
}

TEST(ModeSEncapsulation, FindsFormatsByTheirExactIdentifier) {
    EXPECT_EQ(ModeSEncapsulation::fromIdentifier("hex"), ModeSEncapsulation::RawHex);
    EXPECT_EQ(ModeSEncapsulation::fromIdentifier("bin"), ModeSEncapsulation::RawBin);
    EXPECT_EQ(ModeSEncapsulation::fromIdentifier("avr"), ModeSEncapsulation::Avr);
    EXPECT_EQ(ModeSEncapsulation::fromIdentifier("beast"), ModeSEncapsulation::Beast);
    for (auto const* text : {"", "unknown", "Beast", "AVR", "beast ", "bea"}) {
        EXPECT_EQ(ModeSEncapsulation::fromIdentifier(text), ModeSEncapsulation::Unknown) << text;
    }
}

TEST(ModeSEncapsulation, LeavesABufferOfUnknownFormatUntouched) {
    test::CapturedLog log;
    for (unsigned const format : {0U, 5U, 77U}) {
        std::string buffer = "*5D4CA2D46B609F;\n";
        EXPECT_TRUE(ModeSEncapsulation::extract(buffer, static_cast<Format>(format)).empty());
        EXPECT_EQ(buffer, "*5D4CA2D46B609F;\n");
    }
    EXPECT_TRUE(log.lines().empty());
}

TEST(ModeSEncapsulation, ExtractsByFormat) {
    std::string const frame = test::fromHex("5D4CA2D46B609F");
    std::string buffer = "5D4CA2D46B609F\n";
    EXPECT_TRUE(ModeSEncapsulation::extract(buffer, ModeSEncapsulation::RawHex).empty());
    EXPECT_EQ(buffer, "");

    buffer = frame;
    ASSERT_EQ(ModeSEncapsulation::extract(buffer, ModeSEncapsulation::RawBin).size(), 1U);
    EXPECT_EQ(buffer, "");

    buffer = "*5D4CA2D46B609F;\n";
    ASSERT_EQ(ModeSEncapsulation::extract(buffer, ModeSEncapsulation::Avr).size(), 1U);
    EXPECT_EQ(buffer, "");

    buffer = test::fromHex("1A32 000000000000 00") + frame;
    auto const records = ModeSEncapsulation::extract(buffer, ModeSEncapsulation::Beast);
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0]->data(), frame);
    EXPECT_EQ(records[0].use_count(), 1);
    EXPECT_EQ(buffer, "");
}

TEST(ModeSEncapsulation, EncapsulatesByFormat) {
    ModeSEncapsulation record;
    record.setData(test::fromHex("5D4CA2D46B609F"));
    EXPECT_EQ(ModeSEncapsulation::encapsulate(record, ModeSEncapsulation::RawHex), "5D4CA2D46B609F\n");
    EXPECT_EQ(ModeSEncapsulation::encapsulate(record, ModeSEncapsulation::RawBin), record.data());
    EXPECT_EQ(ModeSEncapsulation::encapsulate(record, ModeSEncapsulation::Avr), "*5D4CA2D46B609F;\n");
    for (unsigned const format : {0U, 4U, 5U, 99U}) {
        EXPECT_EQ(ModeSEncapsulation::encapsulate(record, static_cast<Format>(format)), "") << format;
    }
}
