// SPDX-License-Identifier: MIT
#include "airspace/sky/position_tracker.h"

#include "airspace/readings/truth.h"
#include "airspace/sky/frame_receiver.h"
#include "airspace/sky/recordings.h"

#include <airspace/integrity.h>

#include <gtest/gtest.h>

#include <map>

using namespace quorvel::airspace;
using namespace quorvel::airspace::test;

namespace {

// Of the positions of the truth, which looks ahead, how many are given at least, by the recording.
std::map<std::string, double> const kShares{
    {"flight_406b90", 0.995},
    {"flight_4c01e4", 0.995},
    {"flights_us_2025", 0.92},
    {"mixed_formats", 0.955},
    {"opensky_df17_df18", 0.995},
    {"petersburg", 0.97},
    {"receiver_log_12mhz", 0.94},
    {"receiver_session", 0.945},
    {"receiver_session_damaged", 0.93},
    {"small_12mhz", 0.75},
};

// One tracker for each aircraft, with what else their squitters say.
class Aircrafts {
public:
    explicit Aircrafts(std::optional<Place> const& reference) {
        _limits.receiver = reference;
        _limits.rangeNm = 600.0;
    }

    std::optional<Place> take(Frame const& frame) {
        auto const reply = _receiver.receive(frame.view(), frame.time);
        auto const* squitter = std::get_if<ExtendedSquitter>(&reply.message);
        if (!squitter || !squitter->isIntact()) return std::nullopt;
        auto& one = _all[squitter->address];
        PositionReport report{{}, frame.time, Source::AdsB, reply.repairs > 0, {}, {}};
        if (frame.time - one.speedTime < 10'000) report.groundSpeedKt = one.speedKt;
        if (auto const* velocity = std::get_if<AirborneVelocity>(&squitter->content)) {
            one.speedKt = velocity->horizontal.groundSpeedKt();
            one.speedTime = frame.time;
            return std::nullopt;
        }
        if (auto const* airborne = std::get_if<AirbornePosition>(&squitter->content)) {
            report.position = airborne->position;
        } else if (auto const* surface = std::get_if<SurfacePosition>(&squitter->content)) {
            report.position = surface->position;
            if (surface->speed) report.groundSpeedKt = surface->speed->lowerKt;
        } else {
            return std::nullopt;
        }
        return placeOf(one.tracker, report);
    }

private:
    struct One {
        PositionTracker tracker;
        std::optional<double> speedKt;
        TimeMs speedTime = 0;
    };

    std::optional<Place> placeOf(PositionTracker& tracker, PositionReport const& report) {
        auto const verdict = tracker.take(report, _limits);
        bool const isGiven =
            verdict == PositionTracker::Verdict::Given || verdict == PositionTracker::Verdict::Believed;
        return isGiven ? tracker.place() : std::nullopt;
    }

    FrameReceiver _receiver;
    PositionLimits _limits;
    std::map<std::uint32_t, One> _all;
};

std::map<std::size_t, Place> truthOf(std::filesystem::path const& file) {
    std::map<std::size_t, Place> places;
    forEachLine(file, [&](std::string_view line) {
        auto const one = Json::parse(line);
        if (one.contains("latitude")) places[one["i"]] = {one["latitude"], one["longitude"]};
    });
    return places;
}

double metresApart(Place const& a, Place const& b) { return distanceNm(a, b) * kMetresPerNauticalMile; }

struct Tally {
    std::size_t right = 0;
    std::size_t others = 0; // that the truth does not have
};

Tally track(NumberedRecording const& recording, std::map<std::size_t, Place> const& truth) {
    Aircrafts aircraft(recording.reference);
    Tally tally;
    std::size_t number = 0;
    for (auto const& frame : timedFramesOf(recording)) {
        auto const i = number++;
        auto const place = aircraft.take(frame);
        if (!place) continue;
        auto const expected = truth.find(i);
        if (expected == truth.end()) {
            ++tally.others;
            continue;
        }
        ++tally.right;
        EXPECT_LT(metresApart(*place, expected->second), 10.0)
            << "frame " << i << ": " << place->latitude << " " << place->longitude << " for "
            << expected->second.latitude << " " << expected->second.longitude;
    }
    return tally;
}

} // namespace

TEST(PositionTrackerTruth, EveryPlaceIsWithinTenMetresAndFewAreMissing) {
    if (truthFiles(".tracked.jsonl.gz").empty()) GTEST_SKIP() << "there is no truth in " << TREVALLO_RECORDINGS;
    for (auto const& recording : kNumberedRecordings) {
        if (kShares.count(recording.truth) == 0) continue;
        SCOPED_TRACE(recording.truth);
        auto const truth = truthOf(std::filesystem::path(TREVALLO_RECORDINGS) / "standard" /
                                   (recording.truth + std::string(".tracked.jsonl.gz")));
        auto const tally = track(recording, truth);
        EXPECT_LE(tally.others, truth.size() / 8);
        EXPECT_GE(static_cast<double>(tally.right), kShares.at(recording.truth) * static_cast<double>(truth.size()));
        RecordProperty(recording.truth, std::to_string(tally.right) + " of " + std::to_string(truth.size()));
    }
}
