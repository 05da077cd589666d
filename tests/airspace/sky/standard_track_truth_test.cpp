// SPDX-License-Identifier: MIT
#include "airspace/sky/standard_track.h"

#include "airspace/readings/truth.h"
#include "airspace/sky/frame_receiver.h"
#include "airspace/sky/recordings.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

using namespace quorvel::airspace;
using namespace quorvel::airspace::test;

namespace {

struct Truth {
    std::map<std::size_t, std::string> registers;           // by number of the frame
    std::map<std::string, std::set<std::string>> callsigns; // that squitters tell, by address
};

Truth truthOf(char const* name) {
    Truth truth;
    auto const file =
        std::filesystem::path(TREVALLO_RECORDINGS) / "standard" / (name + std::string(".fields.jsonl.gz"));
    forEachLine(file, [&](std::string_view line) {
        bool const isCommB = line.find(R"("df":2)") != line.npos && line.find(R"("bds":)") != line.npos;
        bool const isIdentification = line.find(R"("bds":"0,8")") != line.npos;
        if (!isCommB && !isIdentification) return;
        auto const one = Json::parse(line);
        if (isCommB) truth.registers[one["i"]] = one["bds"];
        if (isIdentification && one["crc_ok"]) truth.callsigns[one["icao"]].insert(one["callsign"]);
    });
    return truth;
}

struct Tally {
    std::size_t sure = 0;
    std::size_t wrong = 0;
    std::size_t replies = 0;
};

void countChoice(RegisterChoice const& choice, std::string const& expected, Tally& tally) {
    ++tally.replies;
    if (choice.isUnsure) return;
    ++tally.sure;
    if (nameOf(*choice.best).text() != expected) ++tally.wrong;
}

using Tracks = std::map<std::uint32_t, StandardTrack>;

Tracks track(NumberedRecording const& recording, Truth const& truth, Tally& tally) {
    constexpr auto trusted = quorvel::modes::ModeSMessage::MEDIUM;
    FrameReceiver receiver;
    Tracks tracks;
    std::size_t number = 0;
    for (auto const& frame : timedFramesOf(recording)) {
        auto const i = number++;
        auto const reply = receiver.receive(frame.view(), frame.time);
        if (!reply.isDecoded || reply.confidence < trusted) continue;
        auto const key = TrackKey::of(*headerOf(reply.message));
        if (key.value == 0) continue;
        auto& one = tracks.try_emplace(key.value, frame.time).first->second;
        auto const outcome =
            one.take(reply, frame.time, {false, RepairedReplies::Known, {recording.reference, 600.0, true}});
        auto const named = truth.registers.find(i);
        if (outcome.choice && named != truth.registers.end()) countChoice(*outcome.choice, named->second, tally);
        auto const now = one.trackTimeOf(frame.time);
        bool const isHigh = one.items().altitudeFt.isFresh(now) && one.items().altitudeFt.value > 15'000;
        EXPECT_FALSE(isHigh && one.items().isOnGround.isFresh(now) && one.items().isOnGround.value)
            << addressText(reply.address) << " frame " << i;
    }
    return tracks;
}

std::string callsignOf(StandardTrack const& track) {
    return std::string(Callsign{track.items().callsign.value}.text());
}

} // namespace

TEST(StandardTrackTruth, RecordedFlightsHaveTheirOwnCallsignsAndRegistersAndStayInTheAir) {
    if (truthFiles(".fields.jsonl.gz").empty()) GTEST_SKIP() << "there is no truth in " << TREVALLO_RECORDINGS;
    Tally tally;
    std::size_t named = 0;
    for (auto const& recording : kNumberedRecordings) {
        SCOPED_TRACE(recording.truth);
        auto const truth = truthOf(recording.truth);
        for (auto const& [key, one] : track(recording, truth, tally)) {
            auto const known = truth.callsigns.find(addressText(key & 0xFFFFFF));
            if (!one.items().callsign.isThere() || known == truth.callsigns.end()) continue;
            ++named;
            EXPECT_EQ(known->second.count(callsignOf(one)), 1U) << known->first << " " << callsignOf(one);
        }
    }
    EXPECT_GT(named, 50U);
    EXPECT_EQ(tally.wrong, 0U) << "of " << tally.sure << " that are sure of " << tally.replies;
    EXPECT_GT(static_cast<double>(tally.sure), 0.9 * static_cast<double>(tally.replies));
    RecordProperty("replies", std::to_string(tally.replies));
    RecordProperty("sure", std::to_string(tally.sure));
}
