// SPDX-License-Identifier: MIT
// An aggregator runs a decoder and a tracker for each receiver on a thread of its own. They share the log and
// nothing else: whatever the others do, each gives what it gives alone.
#include <modes/modes.h>

#include "simulate/stream_writer.h"
#include "simulate/traffic.h"

#include "support/captured_log.h"
#include "support/steered_clock.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

using namespace quorvel::modes;
namespace simulate = quorvel::simulate;

namespace {

constexpr std::uint64_t kMidnight = 1'714'521'600'000; // 2024-05-01 00:00:00 UTC
constexpr unsigned kReceivers = 8;

// Lines go to the thread that caused them. Where a module's column ends depends on what others have logged:
// the blanks that fill it are left out.
class LinesByThread : public LogHandler {
public:
    LinesByThread() {
        Log::setShowLevel(Log::Debug);
        Log::setLogHandler(this);
    }
    ~LinesByThread() {
        Log::setLogHandler(nullptr);
        Log::setShowLevel(Log::Info);
    }
    LinesByThread(LinesByThread const&) = delete;
    LinesByThread& operator=(LinesByThread const&) = delete;

    void handle(Log::Level level, std::string const& line) override {
        auto const column = line.find(']');
        auto const name = line.find_last_not_of(' ', column - 1) + 1;
        lines.push_back(std::to_string(level) + line.substr(0, name) + line.substr(column));
    }

    static thread_local std::vector<std::string> lines;
};
thread_local std::vector<std::string> LinesByThread::lines;

std::string streamOf(unsigned receiver) {
    simulate::Settings settings;
    settings.aircraft = 25;
    settings.seconds = 20;
    settings.seed = 100 + receiver;
    settings.bitErrors = 0.2;
    settings.mix = simulate::Mix::Adsb;
    simulate::Traffic traffic(settings);
    std::string stream;
    while (auto const frame = traffic.next()) {
        simulate::appendFrame(stream, *frame, simulate::Encoding::BeastPlain, 0);
    }
    return stream;
}

struct Outcome {
    std::vector<std::string> messages;
    std::vector<std::string> pages;
    std::vector<std::string> lines;

    bool operator==(Outcome const& other) const {
        return messages == other.messages && pages == other.pages && lines == other.lines;
    }
};

// All that a receiver makes of its stream, which arrives in pieces. Objects are kept across pieces, so that
// their memory changes hands.
Outcome received(std::string const& stream) {
    LinesByThread::lines.clear();
    Outcome outcome;
    ModeSDecoder decoder;
    ADSBTracker tracker;
    tracker.setAltituteBaroChecking(true, 4, 150);
    std::string buffer;
    ModeSEncapsulation::Records held;
    for (std::size_t at = 0; at < stream.size(); at += 1000) {
        buffer.append(stream, at, 1000);
        auto records = ModeSEncapsulation::extractBeast(buffer);
        for (auto const& record : records) {
            auto const message = decoder.decode(ModeSMessage::DOWNLINK, record);
            if (!message) continue;
            outcome.messages.push_back(message->description() + std::to_string(message->confidence()));
            tracker.procModeSMsg(message);
        }
        held.swap(records);
    }
    for (auto const& target : tracker.allTargets()) outcome.pages.push_back(target->report()->toHtml(""));
    tracker.killTargets(~0ULL);
    outcome.lines = LinesByThread::lines;
    return outcome;
}

} // namespace

TEST(Threads, OfReceiversDoNotDisturbEachOther) {
    test::SteeredClock const clock(kMidnight + 43'200'000);
    LinesByThread const log;
    std::vector<std::string> streams;
    std::vector<Outcome> alone;
    for (unsigned receiver = 0; receiver < kReceivers; ++receiver) {
        streams.push_back(streamOf(receiver));
        alone.push_back(received(streams.back()));
        ASSERT_FALSE(alone.back().messages.empty());
        ASSERT_FALSE(alone.back().pages.empty());
        ASSERT_FALSE(alone.back().lines.empty());
    }

    std::vector<Outcome> together(kReceivers);
    std::atomic<unsigned> ready{0};
    std::vector<std::thread> threads;
    for (unsigned receiver = 0; receiver < kReceivers; ++receiver) {
        threads.emplace_back([&, receiver] {
            ++ready;
            while (ready < kReceivers) std::this_thread::yield();
            together[receiver] = received(streams[receiver]);
        });
    }
    for (auto& thread : threads) thread.join();
    for (unsigned receiver = 0; receiver < kReceivers; ++receiver) {
        EXPECT_TRUE(together[receiver] == alone[receiver]) << "receiver " << receiver;
    }
}

// Frames are cut on one thread and decoded on another: memory is taken here and given back there.
TEST(Threads, MayHandRecordsOverToOthers) {
    test::SteeredClock const clock(kMidnight + 43'200'000);
    test::CapturedLog const log(Log::Error);
    auto const stream = streamOf(99);
    auto const alone = received(stream).pages;

    auto buffer = stream;
    auto records = ModeSEncapsulation::extractBeast(buffer);
    std::vector<std::string> pages;
    std::thread([&] {
        ModeSDecoder decoder;
        ADSBTracker tracker;
        tracker.setAltituteBaroChecking(true, 4, 150);
        for (auto& record : records) {
            tracker.procModeSMsg(decoder.decode(ModeSMessage::DOWNLINK, record));
            record.reset();
        }
        for (auto const& target : tracker.allTargets()) pages.push_back(target->report()->toHtml(""));
    }).join();
    EXPECT_EQ(pages, alone);
}

TEST(Threads, MayChangeTheLogWhileOthersWriteToIt) {
    class Counting : public LogHandler {
    public:
        void handle(Log::Level, std::string const&) override { ++lines; }
        std::atomic<unsigned> lines{0};
    } counting;
    Log::setLogHandler(&counting);
    std::atomic<bool> stop{false};
    std::thread writer([&] {
        for (unsigned i = 0; !stop; ++i) Log::log(Log::Warning, std::string(i % 30, 'm'), "line %u", i);
    });
    for (int i = 0; i < 2000; ++i) Log::setShowLevel(i % 2 == 0 ? Log::Error : Log::Debug);
    while (counting.lines == 0) std::this_thread::yield();
    stop = true;
    writer.join();
    Log::setLogHandler(nullptr);
    Log::setShowLevel(Log::Info);
}
