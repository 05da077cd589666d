// SPDX-License-Identifier: MIT
#include <modes/adsb_message_field.h>

#include <gtest/gtest.h>

#include <iterator>

using namespace quorvel::modes;

namespace {

char const* const kNames[] = {
    "TYPE",
    "TYPE_CODE",
    "EMT_SET",
    "EMT_CAT",
    "CHAR_1",
    "CHAR_2",
    "CHAR_3",
    "CHAR_4",
    "CHAR_5",
    "CHAR_6",
    "CHAR_7",
    "CHAR_8",
    "MOV_CODE",
    "GND_SPD",
    "HDG_STATE",
    "HDG",
    "SAF",
    "NIC_SUPP_B",
    "ALT_SRC",
    "ALT_RES",
    "ALT",
    "T",
    "CPR_FMT",
    "CPR_LAT",
    "CPR_LON",
    "SUB_TYPE",
    "NUC_R",
    "DIR_EW",
    "DIR_NS",
    "VEL_EW",
    "VEL_NS",
    "VR_SRC",
    "VR_SIGN",
    "VR",
    "SUB_TYPE",
    "DATA",
    "SUB_TYPE",
    "EMG_STATE",
    "MODE_A",
    "SUB_TYPE",
    "NAC_P",
    "NIC_BARO",
    "SIL",
    "SIL_SUPP",
    "SUB_TYPE",
    "VER_NUM",
    "NIC_SUPP_A",
};

ADSBMessageField::Designator designator(unsigned value) { return static_cast<ADSBMessageField::Designator>(value); }

} // namespace

TEST(ADSBMessageField, NamesEveryDesignator) {
    ASSERT_EQ(std::size(kNames), 47U);
    for (unsigned value = 0; value < 47; ++value) {
        EXPECT_EQ(ADSBMessageField::designatorName(designator(value)), kNames[value]);
        auto const* fullName = value == 0 ? "Type" : kNames[value];
        EXPECT_EQ(ADSBMessageField::designatorFullName(designator(value)), fullName);
        ADSBMessageField const field(designator(value), 0, 1, "x");
        EXPECT_EQ(field.name(), kNames[value]);
        EXPECT_EQ(field.fullName(), fullName);
    }
    for (unsigned const value : {47U, 48U, 255U, 0xFFFFFFFFU}) {
        EXPECT_EQ(ADSBMessageField::designatorName(designator(value)), "--");
        EXPECT_EQ(ADSBMessageField::designatorFullName(designator(value)), "--");
    }
}

TEST(ADSBMessageField, NumbersItsDesignatorsAsHostsKnowThem) {
    struct {
        ADSBMessageField::Designator designator;
        unsigned value;
    } const cases[] = {{ADSBMessageField::TYPE, 0}, {ADSBMessageField::EMTCAT, 3}, {ADSBMessageField::ACIDCHAR1, 4},
        {ADSBMessageField::ACIDCHAR8, 11}, {ADSBMessageField::MOVCODE, 12}, {ADSBMessageField::SAF, 16},
        {ADSBMessageField::ALT, 20}, {ADSBMessageField::CPRLON, 24}, {ADSBMessageField::VELTYPE, 25},
        {ADSBMessageField::VR, 33}, {ADSBMessageField::TSTTYPE, 34}, {ADSBMessageField::ACSTYPE, 36},
        {ADSBMessageField::TGSTYPE, 39}, {ADSBMessageField::SILSUPP, 43}, {ADSBMessageField::OPSTYPE, 44},
        {ADSBMessageField::NICA, 46}, {ADSBMessageField::UNKNOWN, 47}};
    for (auto const& [designator, value] : cases) EXPECT_EQ(designator, value);
}

TEST(ADSBMessageField, KeepsWhatItIsMadeOf) {
    ADSBMessageField field(ADSBMessageField::ALT, 8, 12, "38050FT");
    EXPECT_EQ(field.designator(), ADSBMessageField::ALT);
    EXPECT_EQ(field.pos(), 8U);
    EXPECT_EQ(field.bits(), 12U);
    EXPECT_TRUE(field.valid());
    EXPECT_EQ(field.description(), "38050FT");

    field.setPos(9);
    field.setBits(0);
    field.setDescription("other");
    EXPECT_EQ(field.pos(), 9U);
    EXPECT_EQ(field.bits(), 0U);
    EXPECT_EQ(field.description(), "other");
    EXPECT_TRUE(field.valid()) << "validity is judged when the field is made";
    field.setValid(false);
    EXPECT_FALSE(field.valid());
}

TEST(ADSBMessageField, IsInvalidWithoutBitsOrWithoutADesignator) {
    EXPECT_FALSE(ADSBMessageField(ADSBMessageField::UNKNOWN, 3, 4, "x").valid());
    EXPECT_FALSE(ADSBMessageField(ADSBMessageField::ALT, 3, 0, "x").valid());
}

TEST(ADSBMessageField, SaysSoWhenItHasNoDescription) {
    ADSBMessageField field(ADSBMessageField::ALT, 8, 12, "");
    EXPECT_EQ(field.description(), "NO_DESCRIPTION");
    field.setDescription("x");
    field.setDescription("");
    EXPECT_EQ(field.description(), "NO_DESCRIPTION");
}

TEST(ADSBMessageField, IsOrderedByPosition) {
    ADSBMessageField const early(ADSBMessageField::VR, 8, 1, "x");
    ADSBMessageField const late(ADSBMessageField::TYPE, 9, 1, "x");
    EXPECT_TRUE(early < late);
    EXPECT_FALSE(late < early);
    EXPECT_FALSE(early < ADSBMessageField(ADSBMessageField::SIL, 8, 5, "y"));
}
