// SPDX-License-Identifier: MIT
// Real recordings, where they are at hand: counts and callsigns as published with them.
#include <airspace/airspace.h>
#include <modes/modes.h>

#include "files/byte_source.h"
#include "files/printable.h"

#include "support/bytes.h"
#include "support/captured_log.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>

using namespace quorvel;
using namespace quorvel::modes;

namespace {

std::string path(std::string const& name) { return std::string(TREVALLO_RECORDINGS) + "/" + name; }

#define NEEDS_RECORDINGS()                                                                                             \
    if (!std::filesystem::exists(path("README.md")))                                                                   \
    GTEST_SKIP() << "there are no recordings in " << TREVALLO_RECORDINGS

airspace::Frames heardOf(std::string const& name) {
    files::ByteSource source(path(name));
    airspace::Stream stream;
    airspace::Frames frames;
    for (std::string bytes; source.read(bytes);) EXPECT_TRUE(stream.feed(bytes, 0, frames));
    EXPECT_TRUE(stream.finish(0, frames));
    return frames;
}

ModeSEncapsulation::Records recordsOf(std::string const& name) {
    ModeSEncapsulation::Records records;
    for (auto const& frame : heardOf(name)) {
        auto const& record = records.emplace_back(std::make_shared<ModeSEncapsulation>());
        record->setData(std::string(frame.view()));
        record->setTimeStamp(frame.time);
    }
    return records;
}

std::vector<std::string> framesOf(std::string const& name) {
    std::vector<std::string> frames;
    for (auto const& frame : heardOf(name)) frames.emplace_back(frame.view());
    return frames;
}

unsigned formatOf(std::string const& frame) { return static_cast<unsigned char>(frame[0]) >> 3; }

struct Recording {
    char const* name;
    std::size_t frames; // Mode S
    std::map<unsigned, std::size_t> formats;
    std::size_t intactSquitters; // DF17
    std::size_t intactAllCalls;  // DF11, remainder below 80
};

std::ostream& operator<<(std::ostream& out, Recording const& recording) { return out << recording.name; }

class Recordings : public testing::TestWithParam<Recording> {};

std::map<unsigned, std::size_t> const kFlight{
    {0, 1879}, {4, 880}, {5, 189}, {11, 2343}, {16, 83}, {17, 962}, {20, 995}, {21, 422}};
std::map<unsigned, std::size_t> const kPetersburg{
    {0, 220}, {4, 164}, {5, 98}, {11, 1989}, {16, 31}, {17, 1718}, {20, 131}, {21, 113}};
std::map<unsigned, std::size_t> const kSession{
    {0, 810}, {4, 245}, {5, 39}, {11, 2063}, {16, 129}, {17, 2018}, {20, 654}, {21, 863}};

ADSBTracker& tracked(ADSBTracker& tracker, std::string const& name) {
    ModeSDecoder decoder;
    for (auto const& record : recordsOf(name)) tracker.procModeSMsg(decoder.decode(ModeSMessage::DOWNLINK, record));
    return tracker;
}

using Row = std::map<std::string, std::string>;

std::vector<std::string> cells(std::string const& line) {
    std::vector<std::string> result;
    bool quoted = false;
    result.emplace_back();
    for (char const character : line) {
        if (character == '"')
            quoted = !quoted;
        else if (character == ',' && !quoted)
            result.emplace_back();
        else if (character != '\r')
            result.back() += character;
    }
    return result;
}

// The published table that has such a column.
std::vector<Row> tableWith(std::string const& column) {
    std::ifstream file;
    std::string line;
    std::vector<std::string> names;
    for (auto const& entry : std::filesystem::directory_iterator(path("expected"))) {
        file = std::ifstream(entry.path());
        std::getline(file, line);
        names = cells(line);
        if (std::find(names.begin(), names.end(), column) != names.end()) break;
    }
    std::vector<Row> rows;
    while (std::getline(file, line)) {
        auto const values = cells(line);
        auto& row = rows.emplace_back();
        for (std::size_t i = 0; i < names.size(); ++i) row[names[i]] = i < values.size() ? values[i] : std::string();
    }
    return rows;
}

} // namespace

TEST_P(Recordings, HoldTheFramesThatWereCountedInThem) {
    NEEDS_RECORDINGS();
    test::CapturedLog log(Log::Error);
    std::map<unsigned, std::size_t> formats;
    std::size_t frames = 0;
    std::size_t squitters = 0;
    std::size_t allCalls = 0;
    for (auto const& frame : framesOf(GetParam().name)) {
        if (frame.size() == 2) continue;
        ++frames;
        ++formats[formatOf(frame)];
        DF17Message squitter;
        DF11Message allCall;
        squitters += formatOf(frame) == 17 && squitter.decode(frame) ? 1U : 0U;
        allCalls +=
            formatOf(frame) == 11 && allCall.decode(frame) && allCall.constFieldPI().interrogatorIdValid() ? 1U : 0U;
    }
    EXPECT_EQ(frames, GetParam().frames);
    EXPECT_EQ(formats, GetParam().formats);
    EXPECT_EQ(squitters, GetParam().intactSquitters);
    EXPECT_EQ(allCalls, GetParam().intactAllCalls);
}

INSTANTIATE_TEST_SUITE_P(Published, Recordings,
    testing::Values(Recording{"flight_4c01e4.avr", 7753, kFlight, 962, 2343},
        Recording{"flight_4c01e4.beast", 7753, kFlight, 962, 2343},
        Recording{"flight_4c01e4_escaped.beast", 7753, kFlight, 962, 2343},
        Recording{"flight_4c01e4_mlat.avr", 7753, kFlight, 962, 2343},
        Recording{"flights_us_2025_escaped.beast", 486, {{17, 486}}, 486, 0},
        Recording{"petersburg.beast", 4464, kPetersburg, 1718, 1988},
        Recording{"petersburg_modeac_escaped.beast", 4464, kPetersburg, 1718, 1988},
        Recording{"petersburg_12mhz.beast", 8928,
            {{0, 440}, {4, 328}, {5, 196}, {11, 3978}, {16, 62}, {17, 3436}, {20, 262}, {21, 226}}, 3436, 3976},
        Recording{"receiver_session.avr", 6821, kSession, 2018, 2043},
        Recording{"receiver_session_damaged_mlat.avr", 6821, kSession, 1807, 1851},
        Recording{"receiver_log_12mhz.avr", 14117,
            {{0, 1665}, {4, 548}, {5, 79}, {11, 4515}, {16, 167}, {17, 4163}, {20, 1269}, {21, 1711}}, 4163, 4467},
        Recording{"opensky_df17_df18.avr", 15000, {{17, 12142}, {18, 2858}}, 12142, 0},
        Recording{"europe_unordered.avr", 122951,
            {{0, 12305}, {4, 7773}, {5, 701}, {16, 65}, {17, 82845}, {20, 16764}, {21, 2498}}, 82769, 0}),
    [](auto const& recording) {
        std::string name = recording.param.name;
        std::replace(name.begin(), name.end(), '.', '_');
        return name;
    });

TEST(Recordings, AreTheSameInEveryForm) {
    NEEDS_RECORDINGS();
    test::CapturedLog log(Log::Error);
    for (std::string const name : {"flight_4c01e4", "flights_us_2025", "petersburg", "receiver_session"}) {
        auto const frames = framesOf(name + ".avr");
        for (auto const* form : {"_mlat.avr", ".beast", "_escaped.beast"}) {
            EXPECT_TRUE(framesOf(name + form) == frames) << name << form;
        }
    }
}

TEST(Recordings, YieldTheAircraftThatFlewInThem) {
    NEEDS_RECORDINGS();
    test::CapturedLog log(Log::Error);
    struct {
        char const* name;
        std::size_t aircraft;
        std::set<std::string> callsigns;
    } const cases[] = {
        {"flight_4c01e4_escaped.beast", 1, {"ASL20Z"}},
        {"flight_406b90_mlat.avr", 1, {"EZY85MH"}},
        {"flights_us_2025.beast", 9, {"AAL2174", "DAL1737", "DAL2136", "DAL2833", "JBU520", "N464T"}},
        {"receiver_session_mlat.avr", 0, {"AFR636P", "BAW26E", "BCS372", "BEL1CP", "EIN381", "RYR3262", "SWR16F"}},
        {"petersburg_escaped.beast", 11,
            {"AAR542", "AFL030", "AFL032", "CAO1024", "CPA238", "MLD185", "SDM6244", "SDM6414", "SDM6620", "UTA470",
                "UTA582"}},
    };
    for (auto const& [name, aircraft, callsigns] : cases) {
        ADSBTracker tracker;
        std::set<std::string> found;
        for (auto const& target : tracked(tracker, name).allTargets()) {
            if (target->callsignValid()) found.insert(files::printable(target->callsign()));
        }
        EXPECT_TRUE(std::includes(found.begin(), found.end(), callsigns.begin(), callsigns.end())) << name;
        EXPECT_TRUE(aircraft == 0 || tracker.allTargets().size() == aircraft) << name;
    }
}

// Line N of the damaged recording is line N of the sound one with up to three bits inverted.
TEST(DamagedRecording, IsRepairedWhereTwoBitsOrFewerAreDamaged) {
    NEEDS_RECORDINGS();
    test::CapturedLog log(Log::Error);
    auto const sound = framesOf("receiver_session_mlat.avr");
    auto const damaged = framesOf("receiver_session_damaged_mlat.avr");
    ASSERT_EQ(sound.size(), damaged.size());
    ModeSDecoder decoder;
    std::size_t repairable = 0;
    for (std::size_t i = 0; i < sound.size(); ++i) {
        if (formatOf(sound[i]) != 17 || sound[i] == damaged[i]) continue;
        unsigned inData = 0;
        unsigned inParity = 0;
        for (std::size_t byte = 0; byte < sound[i].size(); ++byte) {
            auto const bits = static_cast<unsigned>(
                __builtin_popcount(static_cast<unsigned char>(sound[i][byte] ^ damaged[i][byte])));
            (byte < 11 ? inData : inParity) += bits;
        }
        auto const message = decoder.decode(ModeSMessage::DOWNLINK, damaged[i]);
        if (inParity != 0 || inData > 2) continue; // damage of the parity field cannot be found
        ++repairable;
        ASSERT_TRUE(message) << "line " << i;
        EXPECT_EQ(message->data(), sound[i]) << "line " << i;
    }
    EXPECT_GT(repairable, 50U);
}

TEST(HostileInput, NeverYieldsAnythingButFrames) {
    NEEDS_RECORDINGS();
    test::CapturedLog log(Log::Error);
    std::size_t files = 0;
    for (auto const& entry : std::filesystem::directory_iterator(path("hostile"))) {
        ++files;
        std::ifstream file(entry.path(), std::ios::binary);
        std::string const bytes{std::istreambuf_iterator<char>(file), {}};
        for (auto const format : {ModeSEncapsulation::Avr, ModeSEncapsulation::Beast, ModeSEncapsulation::RawBin}) {
            ModeSDecoder decoder;
            ADSBTracker tracker;
            auto buffer = bytes;
            for (auto const& record : ModeSEncapsulation::extract(buffer, format)) {
                auto const size = record->data().size();
                ASSERT_TRUE(size == 2 || size == 7 || size == 14) << entry.path();
                tracker.procModeSMsg(decoder.decode(ModeSMessage::DOWNLINK, record));
            }
            ASSERT_LT(buffer.size(), 23U) << entry.path();
            for (auto const& target : tracker.allTargets()) EXPECT_FALSE(target->report()->toHtml("").empty());
        }
    }
    EXPECT_EQ(files, 123U);
}

// Readings that were published with the frames. Left out is what this library deliberately reads otherwise:
// squitter altitudes (their low bits come from the last payload byte), vertical rates (from byte 4 alone),
// altitude replies in steps of 100 ft, and airspeeds.

TEST(PublishedReadings, OfSingleFramesAgree) {
    NEEDS_RECORDINGS();
    test::CapturedLog log(Log::Error);
    ADSBDecoder const decoder;
    std::map<std::string, std::size_t> compared;
    for (auto const& row : tableWith("groundspeed")) {
        SCOPED_TRACE(row.at("frame"));
        auto const frame = test::fromHex(row.at("frame"));
        if (formatOf(frame) == 20) {
            DF20Message reply;
            ASSERT_TRUE(reply.decode(frame));
            if (row.at("altitude").empty() || reply.constFieldAC().altitudeResolution() != 25) continue;
            EXPECT_EQ(reply.constFieldAC().altitude(), std::stoi(row.at("altitude")));
            ++compared["altitude"];
        } else if (formatOf(frame) == 21) {
            DF21Message reply;
            ASSERT_TRUE(reply.decode(frame));
            EXPECT_EQ(reply.constFieldID().description(), row.at("squawk"));
            ++compared["squawk"];
        } else {
            auto const message = decoder.decode(MOPS_V2, frame.substr(4, 7));
            ASSERT_TRUE(message);
            EXPECT_EQ(message->typeCode(), std::stoul(row.at("typecode")));
            if (auto const identity = std::dynamic_pointer_cast<ADSBIdentityMessage>(message)) {
                auto callsign = row.at("callsign");
                std::replace(callsign.begin(), callsign.end(), '_', ' ');
                EXPECT_EQ(identity->callsign(), callsign);
                ++compared["callsign"];
            } else if (auto const velocity = std::dynamic_pointer_cast<ADSBAirborneVelocityMessage>(message)) {
                EXPECT_NEAR(velocity->groundSpeed(), std::stod(row.at("groundspeed")), 1.0);
                EXPECT_NEAR(velocity->heading(), std::stod(row.at("track")), 1e-6);
                ++compared["velocity"];
            } else if (auto const position = std::dynamic_pointer_cast<ADSBAirbornePositionMessage>(message)) {
                EXPECT_EQ(position->cprFormat(), row.at("cpr_format") == "0" ? 1U : 0U);
                ++compared["position"];
            }
        }
    }
    for (auto const* kind : {"altitude", "squawk", "callsign", "velocity", "position"}) {
        EXPECT_GT(compared[kind], 0U) << kind;
    }
}

TEST(PublishedReadings, OfAWholeRecordingAgree) {
    NEEDS_RECORDINGS();
    test::CapturedLog log(Log::Error);
    ModeSDecoder decoder;
    ADSBTracker tracker;
    std::size_t positions = 0;
    std::size_t squawks = 0;
    std::size_t callsigns = 0;
    // There are several rules for pairing frames, so a position is compared where both have just made one.
    auto const readings = tableWith("cpr_decoding");
    auto reading = readings.begin();
    for (auto const& record : recordsOf("petersburg_mlat.avr")) {
        if (reading == readings.end() || test::fromHex(reading->at("frame")) != record->data()) continue;
        auto const& row = *reading++;
        SCOPED_TRACE(row.at("frame"));
        auto const message = decoder.decode(ModeSMessage::DOWNLINK, record);
        ASSERT_TRUE(message);
        EXPECT_EQ(message->icaoAddress(), std::stoul(row.at("icao").substr(0, 6), nullptr, 16));
        auto const target = tracker.procModeSMsg(message);
        if (!target) continue;
        auto const format = row.at("df");
        if (format == "5" || format == "21") {
            EXPECT_EQ(target->report()->squawkString(), row.at("squawk"));
            ++squawks;
        }
        if (format == "17" && !row.at("callsign").empty()) {
            EXPECT_EQ(files::printable(target->callsign()), files::printable(row.at("callsign")));
            ++callsigns;
        }
        bool const isFresh = target->positionValid() && target->positionLastUpdate() == message->timeStamp();
        if (format == "17" && row.at("cpr_decoding") == "global" && isFresh && row.at("cpr_type") == "Airborne") {
            EXPECT_NEAR(target->latitude(), std::stod(row.at("latitude")), 0.001);
            EXPECT_NEAR(target->longitude(), std::stod(row.at("longitude")), 0.002);
            ++positions;
        }
    }
    EXPECT_TRUE(reading == readings.end()) << "every reading belongs to a frame, in order";
    EXPECT_GT(squawks, 100U);
    EXPECT_GT(callsigns, 10U);
    EXPECT_GT(positions, 100U);
}
