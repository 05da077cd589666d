// SPDX-License-Identifier: MIT
// A host keeps what it was given for as long as it likes: everything reads the same after decoder, tracker
// and the stream are gone, and after the thread that they were on.
#include <modes/modes.h>

#include "simulate/stream_writer.h"
#include "simulate/traffic.h"

#include "support/captured_log.h"
#include "support/steered_clock.h"

#include <gmock/gmock.h>

#include <set>
#include <sstream>
#include <thread>
#include <vector>

using namespace quorvel::modes;
namespace simulate = quorvel::simulate;

namespace {

constexpr std::uint64_t kNoon = 1'714'564'800'000; // 2024-05-01 12:00:00 UTC

struct Kept {
    ModeSEncapsulation::Records records;
    std::vector<std::shared_ptr<ModeSMessage>> messages;
    std::vector<ModeSMessageField const*> fields; // of the messages
    std::vector<std::shared_ptr<ADSBMessage>> squitters;
    std::vector<ADSBMessageField> squitterFields;
    std::vector<std::shared_ptr<ADSBTarget>> targets;
    std::vector<std::shared_ptr<ADSBTargetReport>> reports;
    std::vector<std::shared_ptr<Aircraft>> aircraft;
    std::vector<std::string> pages;
};

std::string streamOf(double seconds) {
    simulate::Settings settings;
    settings.aircraft = 12;
    settings.seconds = seconds;
    settings.seed = 7;
    settings.bitErrors = 0.1;
    settings.mix = simulate::Mix::Adsb;
    simulate::Traffic traffic(settings);
    std::string stream;
    while (auto const frame = traffic.next()) {
        simulate::appendFrame(stream, *frame, simulate::Encoding::BeastPlain, 43'200'000'000'000);
    }
    return stream;
}

void keepSquitter(Kept& kept, ModeSMessage const& message) {
    auto const* const squitter = dynamic_cast<DF17Message const*>(&message);
    if (!squitter) return;
    auto made = ADSBDecoder().decode(MOPS_V2, squitter->constFieldME().data());
    if (!made) return;
    for (auto const& field : made->fields()) kept.squitterFields.push_back(field);
    kept.squitters.push_back(std::move(made));
}

// Half of the targets have been dropped by the tracker, the others go with it.
Kept received(std::string stream) {
    Kept kept;
    ModeSDecoder decoder;
    ADSBTracker tracker;
    AircraftDB database;
    kept.records = ModeSEncapsulation::extractBeast(stream);
    for (auto const& record : kept.records) {
        auto const message = decoder.decode(ModeSMessage::DOWNLINK, record);
        if (!message) continue;
        kept.messages.push_back(message);
        for (auto const* field : message->fields()) kept.fields.push_back(field);
        keepSquitter(kept, *message);
        tracker.procModeSMsg(message);
    }
    kept.targets = tracker.allTargets();
    for (auto const& target : kept.targets) {
        kept.reports.push_back(target->report());
        kept.pages.push_back(kept.reports.back()->toHtml("style.css"));
        database.updateAircraft(target);
        kept.aircraft.push_back(database.createAircraft(target->icaoAddr()));
    }
    tracker.killTargets(kept.targets[kept.targets.size() / 2]->lastUpdate());
    return kept;
}

// Everything that it says.
std::string textOf(Kept const& kept) {
    std::ostringstream text;
    for (auto const& record : kept.records) {
        text << record->timeStamp() << ModeSEncapsulation::encapsulateRawHex(*record);
    }
    for (auto const& message : kept.messages) {
        text << message->timeStamp() << message->dataHexString() << message->description() << '\n';
    }
    for (auto const* field : kept.fields) text << field->name() << field->description() << '\n';
    for (auto const& squitter : kept.squitters) {
        text << squitter->description() << squitter->fields().size() << '\n';
    }
    for (auto const& field : kept.squitterFields) text << field.name() << field.description() << '\n';
    for (auto const& target : kept.targets) text << target->report()->toHtml("");
    for (auto const& report : kept.reports) text << report->toHtml("");
    for (auto const& aircraft : kept.aircraft) text << aircraft->icaoAddrString() << aircraft->airline();
    for (auto const& page : kept.pages) text << page;
    return text.str();
}

class KeptObjects : public testing::Test {
protected:
    test::SteeredClock clock{kNoon};
    test::CapturedLog log{Log::Error};
    std::string const stream = streamOf(15);
};

} // namespace

TEST_F(KeptObjects, AreOfEveryKind) {
    auto const kept = received(stream);
    std::set<unsigned> formats;
    for (auto const& message : kept.messages) {
        formats.insert(std::dynamic_pointer_cast<DFMessage>(message)->downlinkFormat());
    }
    EXPECT_THAT(formats, testing::IsSupersetOf({0U, 4U, 5U, 11U, 16U, 17U, 20U, 21U}));
    EXPECT_GT(kept.records.size(), kept.messages.size()) << "some frames are damaged";
    EXPECT_GT(kept.fields.size(), kept.messages.size());
    EXPECT_GT(kept.squitterFields.size(), kept.squitters.size());
    EXPECT_EQ(kept.targets.size(), 12U);
}

TEST_F(KeptObjects, ReadTheSameWhenDecoderAndTrackerAreGone) {
    auto const kept = received(stream);
    auto const before = textOf(kept);
    for (int other = 0; other < 3; ++other) received(stream); // takes the memory that was given back
    EXPECT_TRUE(textOf(kept) == before);
    EXPECT_TRUE(textOf(received(stream)) == before);
}

TEST_F(KeptObjects, ReadTheSameWhenTheirThreadHasEnded) {
    auto const here = textOf(received(stream));
    Kept kept;
    std::string there;
    std::thread([&] {
        kept = received(stream);
        there = textOf(kept);
    }).join();
    EXPECT_TRUE(there == here);
    EXPECT_TRUE(textOf(kept) == here);
    std::thread([last = std::move(kept)]() mutable { last = {}; }).join();
}

TEST_F(KeptObjects, LiveOnWithoutTheTracker) {
    auto const kept = received(stream);
    auto const target = kept.targets.front();
    target->setCallsign("KEPT    ", target->lastUpdate() + 1);
    EXPECT_EQ(target->report()->callsign(), "KEPT    ");
    EXPECT_NE(kept.reports.front()->callsign(), "KEPT    ") << "a report is of its moment";

    ADSBTracker another;
    for (auto const& message : kept.messages) another.procModeSMsg(message);
    EXPECT_EQ(another.allTargets().size(), kept.targets.size());
}
