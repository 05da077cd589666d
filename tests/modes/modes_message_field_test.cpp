// SPDX-License-Identifier: MIT
#include <modes/modes_message_field.h>

#include "support/bytes.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>
#include <vector>

using namespace quorvel::modes;
using test::fromHex;
using test::withBits;

namespace {

struct FieldCase {
    std::shared_ptr<ModeSMessageField> field;
    ModeSMessageField::Designator designator;
    unsigned value;
    char const* name;
    char const* fullName;
    unsigned bits;
    std::vector<unsigned> positions;
};

// Fields are members: they are never deleted on their own.
template <class Field> std::shared_ptr<ModeSMessageField> member() {
    static_assert(!std::has_virtual_destructor_v<Field>);
    struct Message {
        Field field;
    };
    auto const message = std::make_shared<Message>();
    return {message, &message->field};
}

std::vector<FieldCase> fieldCases() {
    using F = ModeSMessageField;
    return {
        {member<ModeSMessageFieldAA>(), F::AA, 0, "AA", "Address announced", 24, {8}},
        {member<ModeSMessageFieldAC>(), F::AC, 1, "AC", "Altitude code", 13, {19}},
        {member<ModeSMessageFieldAF>(), F::AF, 2, "AF", "Application field", 3, {5}},
        {member<ModeSMessageFieldAP>(), F::AP, 3, "AP", "Address/parity", 24, {32, 88}},
        {member<ModeSMessageFieldCA>(), F::CA, 4, "CA", "Capability", 3, {5}},
        {member<ModeSMessageFieldCF>(), F::CF, 5, "CF", "Control field", 3, {5}},
        {member<ModeSMessageFieldFS>(), F::FS, 7, "FS", "Flight status", 3, {5}},
        {member<ModeSMessageFieldID>(), F::ID, 8, "ID", "Identity", 13, {19}},
        {member<ModeSMessageFieldMB>(), F::MB, 9, "MB", "Message, Comm-B", 56, {32}},
        {member<ModeSMessageFieldME>(), F::ME, 10, "ME", "Message, extended squitter", 56, {32}},
        {member<ModeSMessageFieldMV>(), F::MV, 11, "MV", "Message, ACAS", 56, {32}},
        {member<ModeSMessageFieldPI>(), F::PI, 12, "PI", "Parity/interrogator identifier", 24, {32, 88}},
        {member<ModeSMessageFieldVS>(), F::VS, 14, "VS", "Vertical status", 1, {5}},
    };
}

auto const kFrame = fromHex("8D4840D6202CC371C32CE0576098");

class BareField : public ModeSMessageField {
public:
    BareField() : ModeSMessageField(DR) {}
    unsigned char bits() const override { return 5; }
    bool decodeImpl(std::string const&, unsigned char) override { return true; }
};

} // namespace

TEST(ModeSMessageField, HasNoVirtualDestructor) { EXPECT_FALSE(std::has_virtual_destructor_v<ModeSMessageField>); }

TEST(ModeSMessageField, StartsAtPositionZeroAndInvalid) {
    for (auto const& [field, designator, value, name, fullName, bits, positions] : fieldCases()) {
        SCOPED_TRACE(name);
        EXPECT_EQ(field->designator(), designator);
        EXPECT_EQ(designator, value);
        EXPECT_EQ(field->name(), name);
        EXPECT_EQ(field->fullName(), fullName);
        EXPECT_EQ(field->bits(), bits);
        EXPECT_EQ(field->pos(), 0U);
        EXPECT_FALSE(field->valid());
    }
}

TEST(ModeSMessageField, NamesDesignatorsWithoutAFieldClassToo) {
    EXPECT_EQ(ModeSMessageField::DR, 6U);
    EXPECT_EQ(ModeSMessageField::designatorName(ModeSMessageField::DR), "DR");
    EXPECT_EQ(ModeSMessageField::designatorFullName(ModeSMessageField::DR), "Data selector");
    EXPECT_EQ(ModeSMessageField::UM, 13U);
    EXPECT_EQ(ModeSMessageField::designatorName(ModeSMessageField::UM), "UM");
    EXPECT_EQ(ModeSMessageField::designatorFullName(ModeSMessageField::UM), "Utility message");
    for (unsigned const value : {15U, 16U, 255U, 0xFFFFFFFFU}) {
        auto const designator = static_cast<ModeSMessageField::Designator>(value);
        EXPECT_EQ(ModeSMessageField::designatorName(designator), "--");
        EXPECT_EQ(ModeSMessageField::designatorFullName(designator), "Unknown field");
    }
}

TEST(ModeSMessageField, DescribesItselfByItsNamesUnlessTheClassDoes) {
    EXPECT_EQ(BareField().description(), "DR:Data selector");
}

TEST(ModeSMessageField, IsAcceptedAtItsOwnPositionsOnly) {
    for (auto const& fieldCase : fieldCases()) {
        auto& field = *fieldCase.field;
        for (unsigned pos = 0; pos + fieldCase.bits <= 112; ++pos) {
            bool const isOwn =
                std::find(fieldCase.positions.begin(), fieldCase.positions.end(), pos) != fieldCase.positions.end();
            EXPECT_EQ(field.decode(kFrame, static_cast<unsigned char>(pos)), isOwn) << fieldCase.name << " at " << pos;
            EXPECT_EQ(field.pos(), pos);
            EXPECT_EQ(field.valid(), isOwn);
        }
    }
}

TEST(ModeSMessageField, KeepsPositionAndValidityWhenTheFrameEndsTooEarly) {
    for (auto const& fieldCase : fieldCases()) {
        auto& field = *fieldCase.field;
        auto const pos = static_cast<unsigned char>(fieldCase.positions.front());
        auto const needed = (pos + fieldCase.bits + 7) / 8;
        EXPECT_FALSE(field.decode(kFrame.substr(0, needed - 1), pos)) << fieldCase.name;
        EXPECT_EQ(field.pos(), 0U);
        EXPECT_FALSE(field.valid());
        EXPECT_TRUE(field.decode(kFrame.substr(0, needed), pos)) << fieldCase.name;
        EXPECT_FALSE(field.decode("", pos));
        EXPECT_EQ(field.pos(), pos);
        EXPECT_TRUE(field.valid()) << "of the last decode that had enough bytes";
    }
}

TEST(ModeSMessageField, NeverReadsPastTheEndOfAFrame) {
    for (auto const& fieldCase : fieldCases()) {
        for (auto const position : fieldCase.positions) {
            for (std::size_t length = 0; length < 14; ++length) {
                auto const frame = std::make_unique<std::string>(kFrame.substr(0, length));
                fieldCase.field->decodeImpl(*frame, static_cast<unsigned char>(position));
            }
        }
        EXPECT_FALSE(fieldCase.field->decode(kFrame, 255));
    }
}

TEST(ModeSMessageField, DecodesBytesGivenByPointerAndSize) {
    ModeSMessageFieldAA field;
    EXPECT_TRUE(field.decode(kFrame.data(), kFrame.size(), 8));
    EXPECT_EQ(field.icaoAddress(), 0x4840D6U);
    EXPECT_FALSE(field.decode(nullptr, 0, 8));
}

TEST(FieldAA, KeepsItsAddressAtAWrongPosition) {
    ModeSMessageFieldAA field;
    ASSERT_TRUE(field.decode(kFrame, 8));
    EXPECT_FALSE(field.decode(fromHex("FFFFFFFF"), 5));
    EXPECT_EQ(field.icaoAddress(), 0x4840D6U);
    EXPECT_EQ(field.icaoAddressHexString(), "4840D6");
    EXPECT_EQ(field.description(), "4840D6");
    ASSERT_TRUE(field.decode(fromHex("00000123"), 8));
    EXPECT_EQ(field.description(), "123");
}

TEST(FieldAC, ScalesElevenBitsWhateverTheUnit) {
    struct {
        char const* bytes2and3;
        unsigned unit;
        unsigned resolution;
        int altitude;
    } const cases[] = {
        {"0C38", 0, 25, 18800},
        {"0C28", 0, 100, 78200},
        {"0C78", 1, 25, 18800},
        {"0000", 0, 100, -1000},
        {"0010", 0, 25, -1000},
        {"1FBF", 0, 25, 50175},
        {"1FAF", 0, 100, 203700},
        {"FFFF", 1, 25, 50175},
    };
    for (auto const& [bytes, unit, resolution, altitude] : cases) {
        ModeSMessageFieldAC field;
        ASSERT_TRUE(field.decode(fromHex("0000") + fromHex(bytes), 19));
        EXPECT_EQ(field.altitudeUnit(), unit) << bytes;
        EXPECT_EQ(field.altitudeResolution(), resolution) << bytes;
        EXPECT_EQ(field.altitude(), altitude) << bytes;
        EXPECT_EQ(field.description(), std::to_string(altitude));
    }
}

TEST(FieldAC, MakesItsNumberOfTheBitsWithoutMAndQ) {
    unsigned const positions[] = {19, 20, 21, 22, 23, 24, 26, 28, 29, 30, 31}; // highest first
    for (unsigned i = 0; i < 11; ++i) {
        ModeSMessageFieldAC field;
        ASSERT_TRUE(field.decode(withBits(withBits(std::string(4, '\0'), 27, 1, 1), positions[i], 1, 1), 19));
        EXPECT_EQ(field.altitude(), static_cast<int>(1U << (10 - i)) * 25 - 1000) << positions[i];
    }
}

TEST(FieldID, ReadsFourOctalDigitsFromTheirScatteredBits) {
    struct {
        unsigned position;
        unsigned identity;
    } const cases[] = {{19, 00010}, {20, 01000}, {21, 00020}, {22, 02000}, {23, 00040}, {24, 04000}, {25, 0},
        {26, 00100}, {27, 00001}, {28, 00200}, {29, 00002}, {30, 00400}, {31, 00004}};
    for (auto const& [position, identity] : cases) {
        ModeSMessageFieldID field;
        ASSERT_TRUE(field.decode(withBits(std::string(4, '\0'), position, 1, 1), 19));
        EXPECT_EQ(field.identity(), identity) << position;
    }
    ModeSMessageFieldID field;
    ASSERT_TRUE(field.decode(std::string(4, '\xFF'), 19));
    EXPECT_EQ(field.identity(), 07777U);
}

TEST(FieldID, ShowsFourDigits) {
    ModeSMessageFieldID field;
    EXPECT_EQ(field.description(), "0000");
    auto frame = std::string(4, '\0');
    for (unsigned const position : {20U, 22U, 24U}) frame = withBits(frame, position, 1, 1);
    ASSERT_TRUE(field.decode(frame, 19));
    EXPECT_EQ(field.description(), "7000");
}

TEST(FieldsOfThreeBits, AreTheLastBitsOfTheFirstByte) {
    for (unsigned value = 0; value < 8; ++value) {
        std::string const frame(1, static_cast<char>(0xF8 | value));
        ModeSMessageFieldAF af;
        ModeSMessageFieldCA ca;
        ModeSMessageFieldCF cf;
        ModeSMessageFieldFS fs;
        ASSERT_TRUE(af.decode(frame, 5) && ca.decode(frame, 5) && cf.decode(frame, 5) && fs.decode(frame, 5));
        EXPECT_EQ(af.code(), value);
        EXPECT_EQ(ca.capability(), value);
        EXPECT_EQ(cf.code(), value);
        EXPECT_EQ(fs.flightStatus(), value);
        EXPECT_EQ(af.description(), std::to_string(value));
        EXPECT_EQ(ca.description(), std::to_string(value));
        EXPECT_EQ(cf.description(), std::to_string(value));
    }
}

TEST(FieldFS, NamesEveryStatus) {
    char const* const names[] = {"AIR", "GND", "AIR, ALERT", "GND, ALERT", "ALERT, SPI", "SPI", "UNKNOWN", "UNKNOWN"};
    for (unsigned value = 0; value < 8; ++value) {
        ModeSMessageFieldFS field;
        ASSERT_TRUE(field.decode(std::string(1, static_cast<char>(value)), 5));
        EXPECT_EQ(field.description(), names[value]);
    }
}

TEST(FieldVS, IsOneBit) {
    ModeSMessageFieldVS field;
    EXPECT_EQ(field.description(), "AIR");
    ASSERT_TRUE(field.decode("\x04", 5));
    EXPECT_EQ(field.verticalStatus(), 1U);
    EXPECT_EQ(field.description(), "GND");
    ASSERT_TRUE(field.decode("\xFB", 5));
    EXPECT_EQ(field.verticalStatus(), 0U);
    EXPECT_EQ(field.description(), "AIR");
}

TEST(FieldAP, YieldsTheAddressFromTheParity) {
    ModeSMessageFieldAP field;
    EXPECT_EQ(field.description(), "00");
    ASSERT_TRUE(field.decode(kFrame, 88));
    EXPECT_EQ(field.addressParity(), 0x576098U);
    EXPECT_EQ(field.addressParityHexString(), "576098");
    EXPECT_EQ(field.description(), "576098");
    EXPECT_EQ(field.parity(), 0U);
    EXPECT_EQ(field.icaoAddress(), 0U);
    EXPECT_EQ(field.setParity(0x123456), 0x123456U ^ 0x576098U);
    EXPECT_EQ(field.parity(), 0x123456U);
    EXPECT_EQ(field.icaoAddress(), 0x123456U ^ 0x576098U);
    ASSERT_TRUE(field.decode(kFrame, 32));
    EXPECT_EQ(field.addressParity(), 0x202CC3U);
}

TEST(FieldAP, NeedsALongFrameAtItsLongPosition) {
    ModeSMessageFieldAP field;
    EXPECT_FALSE(field.decode(kFrame.substr(0, 7), 88));
    EXPECT_TRUE(field.decode(kFrame.substr(0, 7), 32));
}

TEST(FieldPI, YieldsParityOrInterrogatorFromTheOther) {
    ModeSMessageFieldPI field;
    ASSERT_TRUE(field.decode(kFrame, 88));
    EXPECT_EQ(field.parityInterrogatorId(), 0x576098U);
    EXPECT_EQ(field.parityInterrogatorIdHexString(), "576098");
    EXPECT_EQ(field.description(), "576098");
    field.setParity(0x576099);
    EXPECT_EQ(field.parity(), 0x576099U);
    EXPECT_EQ(field.interrogatorId(), 1U);
    EXPECT_EQ(field.setInterrogatorId(3), 0x57609BU);
    EXPECT_EQ(field.interrogatorId(), 3U);
    EXPECT_EQ(field.parity(), 0x57609BU);
}

TEST(FieldPI, BelievesInInterrogatorsBelow80) {
    ModeSMessageFieldPI field;
    for (auto const& [interrogator, valid] :
        {std::pair{0U, true}, {15U, true}, {79U, true}, {80U, false}, {0xFFFFFFU, false}}) {
        field.setInterrogatorId(interrogator);
        EXPECT_EQ(field.interrogatorIdValid(), valid) << interrogator;
    }
}

TEST(FieldsOfMessages, HoldSevenBytes) {
    ModeSMessageFieldMB mb;
    ModeSMessageFieldME me;
    ModeSMessageFieldMV mv;
    EXPECT_EQ(me.description(), "");
    ASSERT_TRUE(mb.decode(kFrame, 32) && me.decode(kFrame, 32) && mv.decode(kFrame, 32));
    auto const message = kFrame.substr(4, 7);
    EXPECT_EQ(mb.data(), message);
    EXPECT_EQ(me.data(), message);
    EXPECT_EQ(mv.data(), message);
    for (auto const& text : {mb.description(), me.description(), mv.description(), mb.dataHexString(),
             me.dataHexString(), mv.dataHexString()}) {
        EXPECT_EQ(text, "202CC371C32CE0");
    }
}

TEST(FieldsOfMessages, HoldFewerBytesOfAFrameThatEndsEarly) {
    ModeSMessageFieldMB field;
    EXPECT_TRUE(field.decodeImpl(kFrame.substr(0, 6), 32));
    EXPECT_EQ(field.data(), kFrame.substr(4, 2));
    EXPECT_TRUE(field.decodeImpl("ab", 32));
    EXPECT_EQ(field.data(), "");
}
