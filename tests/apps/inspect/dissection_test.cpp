// SPDX-License-Identifier: MIT
#include "inspect/dissection.h"

#include "dissected.h"
#include "support/frames.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace quorvel::inspect {

namespace {

using namespace modes::test;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;

std::string const kEvenPosition = fromHex("8D40621D58C382D690C8AC2863A7");
std::string const kOddPosition = fromHex("8D40621D58C386435CC412692AD6");

FieldView fieldNamed(std::string const& name, std::vector<FieldView> const& fields) {
    auto const found = std::ranges::find(fields, name, &FieldView::name);
    return found != fields.end() ? *found : FieldView{};
}

// Where each field of a reply starts; they together leave no bit out.
void expectWithoutGaps(std::vector<FieldView> const& fields, unsigned bits) {
    unsigned next = 1;
    for (auto const& field : fields) {
        EXPECT_EQ(field.firstBit, next) << field.name;
        next = field.firstBit + field.width;
    }
    EXPECT_EQ(next, bits + 1);
}

} // namespace

TEST(Dissections, NameTheFormatOfEveryFrame) {
    auto const squitter17 = dissected(squitter(0x4840D6, identification("KLM1023")));
    EXPECT_EQ(squitter17.format, 17U);
    EXPECT_EQ(squitter17.formatName, "extended squitter");
    EXPECT_EQ(dissected(shortFrame(22, 0, 0)).formatName, "reserved for military use");
    EXPECT_EQ(dissected(longFrame(30, 0, payload(0), 0)).format, 24U);
    EXPECT_EQ(dissected(shortFrame(7, 0, 0)).formatName, "reserved");
}

TEST(Dissections, ListFieldsWithPositionWidthBitsAndMeaning) {
    auto const fields = dissected(shortFrame(4, flightStatus(1) | altitudeCode(18800), 0x4CA2D4)).fields;
    EXPECT_EQ(
        fieldNamed("DF", fields), (FieldView{"DF", "Downlink format", 1, 5, "04", "4", "surveillance altitude reply"}));
    EXPECT_EQ(fieldNamed("FS", fields), (FieldView{"FS", "Flight status", 6, 3, "1", "GND", "on the ground"}));
    auto const altitude = fieldNamed("AC", fields);
    EXPECT_EQ(altitude.firstBit, 20U);
    EXPECT_EQ(altitude.width, 13U);
    EXPECT_EQ(altitude.text, "18800");
    EXPECT_EQ(altitude.meaning, "feet, in steps of 25");
    EXPECT_EQ(fieldNamed("AP", fields).meaning, "address 4CA2D4");
    EXPECT_EQ(fieldNamed("UM", fields).firstBit, 14U);
}

TEST(Dissections, CoverEveryBitOfEveryFormat) {
    for (unsigned const format : {0U, 4U, 5U, 11U}) {
        SCOPED_TRACE(format);
        expectWithoutGaps(dissected(shortFrame(format, 0x2AAAAAA, 0)).fields, 56);
    }
    for (unsigned const format : {16U, 17U, 18U, 19U, 20U, 21U}) {
        SCOPED_TRACE(format);
        expectWithoutGaps(dissected(longFrame(format, 0x4840D6, identification("KLM1023"), 0)).fields, 112);
    }
}

TEST(Dissections, ShowTheAddressAndHowFarItCanBeTrusted) {
    auto const reply = shortFrame(5, identityCode(07700), 0x4840D6);
    auto const alone = dissected(reply);
    EXPECT_EQ(alone.address, 0x4840D6U);
    EXPECT_EQ(alone.confidence, modes::ModeSMessage::LOW);

    Dissector dissector(kAllVersions);
    dissector.dissect(squitter(0x4840D6, identification("KLM1023")));
    EXPECT_EQ(dissector.dissect(reply).confidence, modes::ModeSMessage::HIGH);
}

TEST(Dissections, ShowTheParityByWhatIsOverlaidOnIt) {
    auto const squitterParity = *dissected(squitter(0x4840D6, identification("KLM1023"))).parity;
    EXPECT_EQ(squitterParity.remainder(), 0U);
    EXPECT_EQ(squitterParity.meaning, "right");
    auto const meaningOfPI = [](std::string const& frame) { return fieldNamed("PI", dissected(frame).fields).meaning; };
    EXPECT_EQ(meaningOfPI(squitter(0x4840D6, identification("KLM1023"))), "");
    EXPECT_EQ(meaningOfPI(shortFrame(11, capability(5) | 0x4840D6, 17)), "interrogator identifier 17");
    EXPECT_EQ(meaningOfPI(shortFrame(11, capability(5) | 0x4840D6, 80)), "no interrogator identifier");
    auto const allCall = *dissected(shortFrame(11, capability(5) | 0x4840D6, 17)).parity;
    EXPECT_EQ(allCall.remainder(), 17U);
    EXPECT_EQ(allCall.meaning, "right, of interrogator 17");
    auto const damaged = *dissected(shortFrame(11, capability(5) | 0x4840D6, 80)).parity;
    EXPECT_EQ(damaged.meaning, "wrong: there is no such interrogator");
    auto const surveillance = *dissected(shortFrame(4, altitudeCode(18800), 0x4840D6)).parity;
    EXPECT_EQ(surveillance.remainder(), 0x4840D6U);
    EXPECT_EQ(surveillance.field ^ surveillance.calculated, 0x4840D6U);
}

TEST(Dissections, SayWhichBitsWereRepaired) {
    auto const intact = squitter(0x4840D6, identification("KLM1023"));
    auto const damaged = withBitsInverted(intact, {40, 80});
    auto const result = dissected(damaged);
    EXPECT_EQ(result.received, damaged);
    EXPECT_EQ(result.bytes, intact);
    EXPECT_THAT(result.repairedBits, ElementsAre(41, 81));
    EXPECT_EQ(result.problem, "");
    EXPECT_EQ(result.parity->remainder(), 0U);
}

TEST(Dissections, ShowTheFieldsOfAFrameBeyondRepairAsReceived) {
    auto const result = dissected(withBitsInverted(squitter(0x4840D6, identification("KLM1023")), {40, 60, 80}));
    EXPECT_EQ(result.problem, "it is damaged beyond repair: the fields are as received");
    EXPECT_THAT(result.repairedBits, IsEmpty());
    EXPECT_EQ(result.confidence, std::nullopt);
    EXPECT_EQ(result.address, std::nullopt);
    EXPECT_EQ(result.payload, std::nullopt);
    EXPECT_EQ(fieldNamed("AA", result.fields).text, "4840D6");
    EXPECT_EQ(result.parity->meaning, "wrong: bits are damaged");
}

TEST(Dissections, SayWhyAFrameIsNotDecoded) {
    EXPECT_EQ(dissected(fromHex("8D4840D6202CC3")).problem, "a frame of this format has 112 bits, this one has 56");
    EXPECT_EQ(dissected(shortFrame(1, 0, 0)).problem, "the library does not decode this format");
    EXPECT_EQ(dissected(fromHex("7700")).problem, "Mode A/C replies are not decoded");
    EXPECT_EQ(dissected(fromHex("7700")).format, std::nullopt);
}

TEST(Dissections, ReadAPayloadOnceForVersionsThatMeanTheSame) {
    auto const payloadView = *dissected(squitter(0x4840D6, identification("KLM1023", 3))).payload;
    EXPECT_EQ(payloadView.typeCode, 4U);
    EXPECT_EQ(payloadView.typeName, "ACID");
    ASSERT_EQ(payloadView.readings.size(), 1U);
    EXPECT_EQ(payloadView.readings[0].versions, kAllVersions);
    EXPECT_EQ(payloadView.readings[0].description, "TC=ACID, EC=3, CS=KLM1023 ");
    auto const category = fieldNamed("EMT_CAT", payloadView.readings[0].fields);
    EXPECT_EQ(category, (FieldView{"EMT_CAT", "Emitter category", 38, 3, "3", "3", "A3, large"}));
}

TEST(Dissections, SeparateVersionsWhereTheyDiffer) {
    auto const payloadView = *dissected(kEvenPosition).payload;
    ASSERT_EQ(payloadView.readings.size(), 2U);
    EXPECT_THAT(payloadView.readings[0].versions, ElementsAre(modes::MOPS_V0, modes::MOPS_V1));
    EXPECT_THAT(payloadView.readings[1].versions, ElementsAre(modes::MOPS_V2));

    auto const merged = mergedFields(payloadView);
    EXPECT_THAT(fieldNamed("SAF", merged).versions, ElementsAre(modes::MOPS_V0, modes::MOPS_V1));
    EXPECT_THAT(fieldNamed("NIC_SUPP_B", merged).versions, ElementsAre(modes::MOPS_V2));
    EXPECT_EQ(fieldNamed("CPR_LAT", merged).versions, kAllVersions);
    EXPECT_TRUE(std::ranges::is_sorted(merged, {}, &FieldView::firstBit));
}

TEST(Dissections, ReadAPayloadForTheVersionsAskedForOnly) {
    auto const payloadView = *dissected(kEvenPosition, {modes::MOPS_V2}).payload;
    ASSERT_EQ(payloadView.readings.size(), 1U);
    EXPECT_THAT(payloadView.readings[0].versions, ElementsAre(modes::MOPS_V2));
}

TEST(Dissections, SayWhichVersionsDoNotReadAPayload) {
    auto const targetState = *dissected(squitter(0x4840D6, payload(29, 2))).payload;
    EXPECT_THAT(targetState.unread, ElementsAre(modes::MOPS_V0));
    auto const reserved = *dissected(squitter(0x4840D6, payload(25))).payload;
    EXPECT_THAT(reserved.readings, IsEmpty());
    EXPECT_EQ(reserved.unread, kAllVersions);
    EXPECT_EQ(reserved.typeTitle, "Reserved");
}

TEST(Dissections, ReadPayloadsOnlyWhereTheFrameCarriesADSBMessages) {
    auto const message = identification("KLM1023");
    auto const hasPayload = [&](unsigned format, unsigned use) {
        return dissected(longFrame(format, use << 24 | 0x4840D6, message, 0)).payload.has_value();
    };
    EXPECT_TRUE(hasPayload(17, 5));
    EXPECT_TRUE(hasPayload(18, 0));
    EXPECT_TRUE(hasPayload(18, 1));
    EXPECT_TRUE(hasPayload(18, 6));
    EXPECT_FALSE(hasPayload(18, 2));
    EXPECT_TRUE(hasPayload(19, 0));
    EXPECT_FALSE(hasPayload(19, 1));
    EXPECT_FALSE(hasPayload(20, 0));
}

TEST(Dissections, MakeAPositionOfAPair) {
    Dissector dissector(kAllVersions);
    EXPECT_FALSE(dissector.dissect(kEvenPosition).position);
    auto const position = dissector.dissect(kOddPosition).position;
    ASSERT_TRUE(position);
    EXPECT_NEAR(position->latitude, 52.26578, 1e-5);
    EXPECT_NEAR(position->longitude, 3.93891, 1e-5);
    EXPECT_FALSE(dissector.dissect(squitter(0x40621D, identification("KLM1023"))).position)
        << "a frame without coordinates makes no position";
}

TEST(Dissections, MakeNoPositionOfOtherMessagesOfItsTime) {
    Dissector dissector(kAllVersions);
    dissector.dissect(kEvenPosition, 1000);
    EXPECT_TRUE(dissector.dissect(kOddPosition, 1500).position);
    EXPECT_TRUE(dissector.dissect(kOddPosition, 1500).position) << "heard by another receiver";
    auto const velocity = squitter(0x40621D, airborneVelocity({}));
    EXPECT_FALSE(dissector.dissect(velocity, 1500).position);
}

TEST(Dissections, MakeNoPositionOfFramesTooFarApart) {
    Dissector dissector(kAllVersions);
    dissector.dissect(kEvenPosition, 1);
    EXPECT_FALSE(dissector.dissect(kOddPosition, 20'000).position);
    dissector.dissect(kEvenPosition, 100'000);
    EXPECT_TRUE(dissector.dissect(kOddPosition, 100'500).position);
}

TEST(Dissections, OfManyAircraftGoOnMakingPositions) {
    Dissector dissector(kAllVersions);
    for (unsigned i = 1; i <= 5000; ++i) dissector.dissect(squitter(i, identification("KLM1023")), 30ULL * i);
    dissector.dissect(kEvenPosition, 300'000);
    EXPECT_TRUE(dissector.dissect(kOddPosition, 300'500).position);
}

TEST(Dissections, NameGapsBetweenTheFieldsOfAPayload) {
    auto const dissection = dissected(squitter(0x4840D6, operationalStatus(2)));
    auto const fields =
        withGaps(mergedFields(*dissection.payload), dissection.bytes, kPayloadFirstBit, kPayloadLastBit);
    auto const gap = fieldNamed("-", fields);
    EXPECT_EQ(gap.title, "not decoded");
    EXPECT_EQ(gap.firstBit, 38U);
    EXPECT_EQ(gap.width, 35U);
    EXPECT_EQ(fields.back().firstBit + fields.back().width - 1, kPayloadLastBit);
}

} // namespace quorvel::inspect
