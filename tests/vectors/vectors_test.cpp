// SPDX-License-Identifier: MIT
// Compares what the library makes of each vector with what the vector files expect, line by line.
#include <modes/modes.h>

#include "support/bytes.h"
#include "support/captured_log.h"
#include "vectors/vector_file.h"

#include <gmock/gmock.h>

#include <cstdio>

using namespace quorvel::modes;
using test::CapturedLog;
using test::escaped;
using testing::ElementsAreArray;

namespace {

using Lines = std::vector<std::string>;

char const* const kLevels[] = {"Debug", "Info", "Warning", "Error"};

std::string sixDigits(unsigned number) {
    char text[9] = "";
    std::snprintf(text, sizeof text, "%06X", number);
    return text;
}

std::string fieldLine(std::string const& name, unsigned pos, unsigned bits, std::string const& text) {
    return "field " + name + " " + std::to_string(pos) + " " + std::to_string(bits) + " " + escaped(text);
}

void addLog(Lines& lines, CapturedLog& log) {
    for (auto const& line : log.take()) {
        lines.push_back(std::string("log ") + kLevels[line.level] + " " + line.module + " " + escaped(line.text));
    }
}

std::shared_ptr<DFMessage> makeReply(DFMessage::DownlinkFormat format) {
    switch (format) {
    case DFMessage::DF0: return std::make_shared<DF0Message>();
    case DFMessage::DF4: return std::make_shared<DF4Message>();
    case DFMessage::DF5: return std::make_shared<DF5Message>();
    case DFMessage::DF11: return std::make_shared<DF11Message>();
    case DFMessage::DF16: return std::make_shared<DF16Message>();
    case DFMessage::DF17: return std::make_shared<DF17Message>();
    case DFMessage::DF18: return std::make_shared<DF18Message>();
    case DFMessage::DF19: return std::make_shared<DF19Message>();
    case DFMessage::DF20: return std::make_shared<DF20Message>();
    case DFMessage::DF21: return std::make_shared<DF21Message>();
    default: return {};
    }
}

Lines frameLines(std::string const& bytes) {
    CapturedLog log;
    ModeSDecoder decoder;
    log.take();
    Lines lines;
    auto const format = DFMessage::downlinkFormatByCode(static_cast<unsigned char>(bytes[0]) >> 3);
    if (auto const reply = makeReply(format)) {
        EXPECT_EQ(reply->downlinkFormat(), format);
        bool const valid = reply->decode(bytes);
        EXPECT_EQ(reply->valid(), valid);
        lines.push_back(std::string("valid ") + (valid ? "1" : "0"));
        lines.push_back("parity " + sixDigits(reply->calculatedParity()));
        lines.push_back("address " + sixDigits(reply->icaoAddress()));
        if (bytes.size() >= reply->size()) {
            lines.push_back("description " + escaped(reply->description()));
            for (auto const* field : reply->fields()) {
                EXPECT_TRUE(field->valid());
                lines.push_back(fieldLine(field->name(), field->pos(), field->bits(), field->description()));
            }
        }
    } else {
        EXPECT_FALSE(decoder.decode(ModeSMessage::DOWNLINK, bytes));
        lines.emplace_back("none");
    }
    addLog(lines, log);
    return lines;
}

// Collects "value NAME VALUE" lines.
class Values {
public:
    template <class T> void add(char const* name, T const& value) {
        if constexpr (std::is_same_v<T, std::string>) {
            lines.push_back(std::string("value ") + name + " " + value);
        } else if constexpr (std::is_same_v<T, double>) {
            char text[40] = "";
            std::snprintf(text, sizeof text, "%.9g", value);
            lines.push_back(std::string("value ") + name + " " + text);
        } else {
            lines.push_back(std::string("value ") + name + " " + std::to_string(static_cast<long long>(value)));
        }
    }
    Lines lines;
};

template <class Position> void addCompactPosition(Values& values, Position const& m) {
    values.add("timeApplicability", m.timeApplicability());
    values.add("cprFormat", m.cprFormat());
    values.add("cprLatitude", m.cprLatitude());
    values.add("cprLongitude", m.cprLongitude());
}

char const* read(ADSBIdentityMessage const& m, Values& values) {
    values.add("emitterCategory", m.emitterCategory());
    values.add("callsign", m.callsign());
    return "ADSBIdentityMessage";
}

char const* read(ADSBSurfacePositionMessage const& m, Values& values) {
    values.add("movementCode", m.movementCode());
    values.add("movement", m.movement());
    values.add("groundSpeed", m.groundSpeed());
    values.add("headingValid", m.headingValid());
    values.add("heading", m.heading());
    addCompactPosition(values, m);
    return "ADSBSurfacePositionMessage";
}

void readBase(ADSBAirbornePositionMessage const& m, Values& values) {
    values.add("altitudeSource", m.altitudeSource());
    values.add("altResolution", m.altResolution());
    values.add("altitude", m.altitude());
    addCompactPosition(values, m);
}

char const* read(ADSBAirbornePositionMessageV0 const& m, Values& values) {
    readBase(m, values);
    values.add("singalAntena", m.singalAntena());
    return "ADSBAirbornePositionMessageV0";
}

char const* read(ADSBAirbornePositionMessageV1 const& m, Values& values) {
    readBase(m, values);
    values.add("singalAntena", m.singalAntena());
    return "ADSBAirbornePositionMessageV1";
}

char const* read(ADSBAirbornePositionMessageV2 const& m, Values& values) {
    readBase(m, values);
    values.add("nicSupplementB", m.nicSupplementB());
    return "ADSBAirbornePositionMessageV2";
}

void readBase(ADSBAirborneVelocityMessage const& m, Values& values) {
    values.add("velocityType", m.velocityType());
    values.add("groundSpeed", m.groundSpeed());
    values.add("heading", m.heading());
    values.add("verticalRateSource", m.verticalRateSource());
    values.add("verticalRate", m.verticalRate());
}

char const* read(ADSBAirborneVelocityMessageV0 const& m, Values& values) {
    readBase(m, values);
    values.add("nucr", m.nucr());
    return "ADSBAirborneVelocityMessageV0";
}

char const* read(ADSBAirborneVelocityMessageV1 const& m, Values& values) {
    readBase(m, values);
    return "ADSBAirborneVelocityMessageV1";
}

char const* read(ADSBAirborneVelocityMessageV2 const& m, Values& values) {
    readBase(m, values);
    return "ADSBAirborneVelocityMessageV2";
}

void readBase(ADSBAircraftStatusMessage const& m, Values& values) {
    values.add("subtype", static_cast<unsigned>(m.subtype()));
    values.add("emergencyState", static_cast<unsigned>(m.emergencyState()));
}

char const* read(ADSBAircraftStatusMessageV0 const& m, Values& values) {
    readBase(m, values);
    return "ADSBAircraftStatusMessageV0";
}

char const* read(ADSBAircraftStatusMessageV2 const& m, Values& values) {
    readBase(m, values);
    values.add("modeACode", m.modeACode());
    return "ADSBAircraftStatusMessageV2";
}

void readBase(ADSBTargetStatusMessage const& m, Values& values) {
    values.add("subtype", m.subtype());
    values.add("nacp", m.nacp());
    values.add("nicBaro", m.nicBaro());
    values.add("sil", m.sil());
}

char const* read(ADSBTargetStatusMessageV1 const& m, Values& values) {
    readBase(m, values);
    return "ADSBTargetStatusMessageV1";
}

char const* read(ADSBTargetStatusMessageV2 const& m, Values& values) {
    readBase(m, values);
    values.add("silSupp", m.silSupp());
    return "ADSBTargetStatusMessageV2";
}

char const* read(ADSBAircraftOperationalStatusMessage const& m, Values& values) {
    values.add("versionNumber", m.versionNumber());
    values.add("version", m.version());
    values.add("nicSupplementA", m.nicSupplementA());
    return "ADSBAircraftOperationalStatusMessage";
}

char const* read(ADSBTestMessage const& m, Values& values) {
    values.add("subtype", m.subtype());
    std::string digits;
    for (char const byte : m.testData()) {
        char text[3] = "";
        std::snprintf(text, sizeof text, "%02X", static_cast<unsigned>(static_cast<unsigned char>(byte)));
        digits += text;
    }
    values.add("testData", digits);
    return "ADSBTestMessage";
}

// The name of the message's class and its values; nothing for a class that no table names.
template <class... Classes> std::string readAs(ADSBMessage const& message, Values& values) {
    std::string name;
    (
        [&] {
            if (auto const* cast = dynamic_cast<Classes const*>(&message)) name = read(*cast, values);
        }(),
        ...);
    return name;
}

std::string readAny(ADSBMessage const& message, Values& values) {
    return readAs<ADSBIdentityMessage, ADSBSurfacePositionMessage, ADSBAirbornePositionMessageV0,
        ADSBAirbornePositionMessageV1, ADSBAirbornePositionMessageV2, ADSBAirborneVelocityMessageV0,
        ADSBAirborneVelocityMessageV1, ADSBAirborneVelocityMessageV2, ADSBAircraftStatusMessageV0,
        ADSBAircraftStatusMessageV2, ADSBTargetStatusMessageV1, ADSBTargetStatusMessageV2,
        ADSBAircraftOperationalStatusMessage, ADSBTestMessage>(message, values);
}

Lines payloadLines(std::string const& bytes, MOPSVersion version) {
    CapturedLog log;
    ADSBDecoder const decoder;
    log.take();
    Lines lines;
    if (auto const message = decoder.decode(version, bytes)) {
        EXPECT_TRUE(message->valid());
        Values values;
        lines.push_back("class " + readAny(*message, values));
        lines.push_back("description " + escaped(message->description()));
        lines.insert(lines.end(), values.lines.begin(), values.lines.end());
        for (auto const& field : message->fields()) {
            EXPECT_TRUE(field.valid());
            lines.push_back(fieldLine(field.name(), field.pos(), field.bits(), field.description()));
        }
    } else {
        lines.emplace_back("none");
    }
    addLog(lines, log);
    return lines;
}

} // namespace

TEST(Vectors, FramesDecodeAsExpected) {
    auto const vectors = test::readVectors("frames.txt");
    ASSERT_GT(vectors.size(), 200U);
    for (auto const& vector : vectors) {
        SCOPED_TRACE("frames.txt:" + std::to_string(vector.line) + ": " + vector.name);
        EXPECT_THAT(frameLines(test::fromHex(vector.input.at(1))), ElementsAreArray(vector.expected));
    }
}

TEST(Vectors, PayloadsDecodeAsExpected) {
    auto const vectors = test::readVectors("payloads.txt");
    ASSERT_GT(vectors.size(), 1000U);
    for (auto const& vector : vectors) {
        SCOPED_TRACE("payloads.txt:" + std::to_string(vector.line) + ": " + vector.name);
        auto const bytes = vector.input.at(1) == "-" ? std::string() : test::fromHex(vector.input[1]);
        auto const version = static_cast<MOPSVersion>(std::stoi(vector.input.at(2)));
        EXPECT_THAT(payloadLines(bytes, version), ElementsAreArray(vector.expected));
    }
}
