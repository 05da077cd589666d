// SPDX-License-Identifier: MIT
#include <modes/adsb_airborne_position_message.h>
#include <modes/adsb_aircraft_status_message.h>
#include <modes/adsb_identity_message.h>
#include <modes/adsb_message.h>

#include "support/bytes.h"
#include "support/captured_log.h"
#include "support/steered_clock.h"

#include <gmock/gmock.h>

using namespace quorvel::modes;
using test::CapturedLog;
using test::fromHex;
using test::Holds;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// A message class as a host may derive it.
class OwnPosition : public ADSBMessage {
public:
    OwnPosition() : ADSBMessage(POS_AIR) {}
    bool decodeImpl() override {
        addField({ADSBMessageField::CPRLON, 39, 17, "late"});
        addField({ADSBMessageField::ALT, 8, 12, "early"});
        addField({ADSBMessageField::ALTRES, 8, 1, "second at its place"});
        return result;
    }
    bool result = true;
};

auto const kPayload = fromHex("58C382D690C8AC");

std::vector<std::string> names(ADSBMessage const& message) {
    std::vector<std::string> result;
    for (auto const& field : message.fields()) result.push_back(field.name());
    return result;
}

} // namespace

TEST(ADSBMessage, StartsEmptyWithTheHostsTimeInWholeSeconds) {
    test::SteeredClock clock(1'714'566'896'789);
    OwnPosition const message;
    EXPECT_EQ(message.data(), "");
    EXPECT_EQ(message.dataHexString(), "");
    EXPECT_FALSE(message.valid());
    EXPECT_EQ(message.typeCode(), 0U);
    EXPECT_EQ(message.type(), ADSBMessage::POS_AIR);
    EXPECT_EQ(message.timeStamp(), 1'714'566'896'000U);
    EXPECT_EQ(message.signalAmplitude(), 0U);
    EXPECT_TRUE(message.fields().empty());
}

TEST(ADSBMessage, MapsEveryTypeCodeToAType) {
    struct {
        unsigned first;
        unsigned last;
        ADSBMessage::ADSBMessageType type;
    } const rows[] = {{0, 0, ADSBMessage::RESERVED}, {1, 4, ADSBMessage::ACID}, {5, 8, ADSBMessage::POS_GND},
        {9, 18, ADSBMessage::POS_AIR}, {19, 19, ADSBMessage::AIR_VEL}, {20, 22, ADSBMessage::POS_AIR},
        {23, 23, ADSBMessage::TEST}, {24, 27, ADSBMessage::RESERVED}, {28, 28, ADSBMessage::AC_STATUS},
        {29, 29, ADSBMessage::TG_STATUS}, {30, 30, ADSBMessage::RESERVED}, {31, 31, ADSBMessage::OP_STATUS},
        {32, 255, ADSBMessage::RESERVED}};
    for (auto const& [first, last, type] : rows) {
        for (unsigned code = first; code <= last; ++code) {
            EXPECT_EQ(ADSBMessage::typeByCode(static_cast<std::uint8_t>(code)), type) << code;
        }
    }
}

TEST(ADSBMessage, NamesEveryType) {
    struct {
        unsigned type;
        char const* name;
        char const* fullName;
    } const rows[] = {{0, "ACID", "Aircraft Identification"}, {1, "POS_GND", "Surface Position"},
        {2, "POS_AIR", "Airborne Position"}, {3, "AIR_VEL", "Airborne Velocities"}, {4, "TEST", "Test"},
        {5, "AC_STATUS", "Aircraft Status"}, {6, "TG_STATUS", "Target State and Status Information"},
        {7, "OP_STATUS", "Aircraft Operation Status"}, {8, "RESERVED", "Reserved"}, {9, "RESERVED", "Reserved"},
        {0xFFFFFFFF, "RESERVED", "Reserved"}};
    for (auto const& [type, name, fullName] : rows) {
        EXPECT_EQ(ADSBMessage::typeName(static_cast<ADSBMessage::ADSBMessageType>(type)), name);
        EXPECT_EQ(ADSBMessage::typeFullName(static_cast<ADSBMessage::ADSBMessageType>(type)), fullName);
    }
    EXPECT_EQ(OwnPosition().typeName(), "POS_AIR");
    EXPECT_EQ(OwnPosition().typeFullName(), "Airborne Position");
}

TEST(ADSBMessage, KeepsSevenBytesAndTheirTypeCode) {
    OwnPosition message;
    EXPECT_TRUE(message.decode(kPayload + "more"));
    EXPECT_EQ(message.data(), kPayload);
    EXPECT_EQ(message.dataHexString(), "58C382D690C8AC");
    EXPECT_EQ(message.typeCode(), 11U);
    EXPECT_TRUE(message.valid());
    OwnPosition another;
    EXPECT_TRUE(another.decode(kPayload.data(), kPayload.size()));
    EXPECT_EQ(another.data(), kPayload);
}

TEST(ADSBMessage, ChangesNothingWhenThereAreTooFewBytes) {
    CapturedLog log;
    OwnPosition message;
    EXPECT_FALSE(message.decode(kPayload.substr(0, 6)));
    EXPECT_FALSE(message.decode(nullptr, 0));
    EXPECT_EQ(message.data(), "");
    EXPECT_TRUE(message.fields().empty());
    ASSERT_TRUE(message.decode(kPayload));
    EXPECT_FALSE(message.decode(kPayload.substr(0, 6)));
    EXPECT_TRUE(message.valid());
    EXPECT_EQ(message.fields().size(), 5U);
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST(ADSBMessage, RejectsPayloadsOfAnotherType) {
    CapturedLog log;
    OwnPosition message;
    ASSERT_TRUE(message.decode(kPayload));
    auto const other = fromHex("200420F1CB3820");
    EXPECT_FALSE(message.decode(other));
    EXPECT_THAT(log.take(), Holds(Log::Error, "ADSBMessage", "Type code mismatch."));
    EXPECT_TRUE(message.valid()) << "validity stays";
    EXPECT_EQ(message.data(), other);
    EXPECT_EQ(message.typeCode(), 4U);
    EXPECT_EQ(message.fields().size(), 5U) << "nothing is listed";
}

TEST(ADSBMessage, ListsTypeAndTypeCodeAndSortsByPosition) {
    OwnPosition message;
    ASSERT_TRUE(message.decode(kPayload));
    EXPECT_THAT(names(message), ElementsAre("TYPE", "TYPE_CODE", "ALT", "ALT_RES", "CPR_LON"));
    auto const fields = message.fields();
    EXPECT_EQ(fields[0].description(), "POS_AIR");
    EXPECT_EQ(fields[1].description(), "11");
    for (auto const& field : {fields[0], fields[1]}) {
        EXPECT_EQ(field.pos(), 0U);
        EXPECT_EQ(field.bits(), 5U);
    }
}

TEST(ADSBMessage, SortsTheFieldsOfAFailedDecodingToo) {
    OwnPosition message;
    message.result = false;
    EXPECT_FALSE(message.decode(kPayload));
    EXPECT_FALSE(message.valid());
    EXPECT_THAT(names(message), ElementsAre("TYPE", "TYPE_CODE", "ALT", "ALT_RES", "CPR_LON"));
}

TEST(ADSBMessage, AppendsItsFieldsAgainWhenDecodedAgain) {
    OwnPosition message;
    ASSERT_TRUE(message.decode(kPayload));
    ASSERT_TRUE(message.decode(kPayload));
    EXPECT_THAT(names(message), ElementsAre("TYPE", "TYPE_CODE", "TYPE", "TYPE_CODE", "ALT", "ALT_RES", "ALT",
                                    "ALT_RES", "CPR_LON", "CPR_LON"));
}

TEST(ADSBMessage, DescribesItselfWithTheTypeCodeAsARawByte) {
    OwnPosition message;
    EXPECT_EQ(message.description(), std::string("ADS-B Type-") + '\0' + " POS_AIR Message");
    ASSERT_TRUE(message.decode(kPayload));
    EXPECT_EQ(message.description(), "ADS-B Type-\x0B POS_AIR Message");
}

TEST(ADSBMessage, KeepsWhatItIsGiven) {
    OwnPosition message;
    message.setTimeStamp(123);
    message.setSignalAmplitude(200);
    EXPECT_EQ(message.timeStamp(), 123U);
    EXPECT_EQ(message.signalAmplitude(), 200U);
}

namespace {

// A class of the library with a field more, as a host may derive it.
class PositionWithMore : public ADSBAirbornePositionMessageV2 {
public:
    bool decodeImpl() override {
        addField({ADSBMessageField::UNKNOWN, 55, 1, "before"});
        bool const decoded = ADSBAirbornePositionMessageV2::decodeImpl();
        seenWhileDecoding = fields().size();
        addField({ADSBMessageField::UNKNOWN, 8, 1, "after"});
        return decoded;
    }
    std::size_t seenWhileDecoding = 0;
};

std::vector<std::string> texts(ADSBMessage const& message) {
    std::vector<std::string> result;
    for (auto const& field : message.fields()) result.push_back(field.description());
    return result;
}

} // namespace

TEST(ADSBMessage, ListsTheFieldsOfADerivedClassAmongThoseOfTheLibrary) {
    PositionWithMore message;
    ASSERT_TRUE(message.decode(kPayload));
    EXPECT_EQ(message.seenWhileDecoding, 11U);
    EXPECT_THAT(names(message), ElementsAre("TYPE", "TYPE_CODE", "ALT_SRC", "NIC_SUPP_B", "ALT", "--", "ALT_RES", "T",
                                    "CPR_FMT", "CPR_LAT", "CPR_LON", "--"));
}

TEST(ADSBMessage, ListsTheFieldsOfEachPayloadThatItDecoded) {
    ADSBAircraftStatusMessageV0 message;
    ASSERT_TRUE(message.decode(fromHex("E1A00000000000")));
    ASSERT_TRUE(message.decode(fromHex("E0000000000000"))) << "which says nothing of the emergency";
    EXPECT_THAT(
        texts(message), ElementsAre("AC_STATUS", "28", "AC_STATUS", "28", "EMERGENCY", "NO_INFO", "HIJACK", "HIJACK"));
    EXPECT_FALSE(message.decode(fromHex("E7000000000000"))) << "an unknown subtype";
    EXPECT_EQ(message.fields().size(), 10U);
    EXPECT_FALSE(message.decode(kPayload)) << "another type";
    EXPECT_EQ(message.fields().size(), 10U);
    EXPECT_EQ(message.fields()[9].description(), "HIJACK");
}

TEST(ADSBMessage, AppendsTheFieldsOfADecodingThatTheHostAskedFor) {
    ADSBIdentityMessage message;
    ASSERT_TRUE(message.decode(fromHex("200420F1CB3820")));
    auto const once = names(message);
    ASSERT_EQ(once.size(), 11U);
    ASSERT_TRUE(message.decodeImpl());
    ASSERT_TRUE(message.decodeImpl());
    auto expected = once;
    for (int i = 0; i < 2; ++i) expected.insert(expected.end(), once.begin() + 2, once.end());
    EXPECT_EQ(names(message), expected) << "in the order in which they were listed: only decode() sorts";
}

TEST(ADSBMessage, AppendsAFieldThatAHostAddsLater) {
    ADSBIdentityMessage message;
    ASSERT_TRUE(message.decode(fromHex("200420F1CB3820")));
    message.addField({ADSBMessageField::UNKNOWN, 0, 1, "late"});
    EXPECT_EQ(texts(message).back(), "late");
    EXPECT_EQ(message.fields().size(), 12U);
}

TEST(ADSBMessage, KeepsTheOrderOfADecodingWhenAFieldIsAddedLater) {
    OwnPosition message;
    ASSERT_TRUE(message.decode(kPayload));
    message.addField({ADSBMessageField::UNKNOWN, 0, 1, "late"});
    EXPECT_THAT(names(message), ElementsAre("TYPE", "TYPE_CODE", "ALT", "ALT_RES", "CPR_LON", "--"));
}

TEST(ADSBMessage, CopiesCarryTheirFields) {
    ADSBIdentityMessage message;
    ASSERT_TRUE(message.decode(fromHex("200420F1CB3820")));
    auto const copy = message;
    ASSERT_TRUE(message.decode(fromHex("20000000000000")));
    EXPECT_THAT(texts(copy), ElementsAre("ACID", "4", "0", "A", "B", "C", "1", "2", "3", " ", " "));
}
