// SPDX-License-Identifier: MIT
#include "run/playback.h"

#include "run_support.h"

#include <gtest/gtest.h>

#include <asio/post.hpp>

#include <chrono>
#include <functional>
#include <string>
#include <utility>
#include <vector>

using namespace quorvel;
using namespace quorvel;
using namespace quorvel::run;
using namespace quorvel::run::test;

namespace {

using Heard = std::vector<std::pair<std::string, airspace::TimeMs>>; // source, ms after midnight

struct Player {
    modes::test::TemporaryFolder folder;
    asio::io_context context;
    std::vector<std::string> lines;
    Failures failures{[this](std::string const& line) { lines.push_back(line); }};
    Stations stations{{}, false};
    Heard heard;
    int pauses = 0;
    int ends = 0;
    std::function<void()> onFrame = [] {};
    std::function<void()> onPause = [] {};
    Playback playback;

    explicit Player(double speed = 0)
        : playback(context, speed, failures,
              {[this](Source& source, airspace::Frame const& frame) {
                   heard.emplace_back(source.name, frame.time - kMayDay);
                   onFrame();
               },
                  [this] {
                      ++pauses;
                      onPause();
                  },
                  [this] {
                      if (++ends; stations.haveEnded()) playback.stop();
                  }}) {}

    void add(std::string const& name, std::vector<airspace::TimeMs> const& times) {
        std::vector<airspace::Frame> frames;
        for (auto const time : times) frames.push_back(identification(0x4B1234, kMayDay + time));
        auto& source = stations.add(name);
        source.recording = recording(folder.path(name), frames);
        playback.add(source);
    }

    void run() {
        playback.start();
        context.run();
    }
};

} // namespace

TEST(Playback, HearsRecordingsInTheOrderOfTheirTimes) {
    Player player;
    player.add("one", {1000, 4000, 5000});
    player.add("two", {2000, 3000, 9000});
    player.run();
    EXPECT_EQ(player.heard,
        (Heard{{"one", 1000}, {"two", 2000}, {"two", 3000}, {"one", 4000}, {"one", 5000}, {"two", 9000}}));
    EXPECT_EQ(player.ends, 2);
}

TEST(Playback, OfEqualTimesHearsTheFirstRecordingFirst) {
    Player player;
    player.add("one", {1000, 1000});
    player.add("two", {1000});
    player.run();
    EXPECT_EQ(player.heard, (Heard{{"one", 1000}, {"one", 1000}, {"two", 1000}}));
}

TEST(Playback, TakesItsTimeAtASpeed) {
    Player player(20);
    player.add("one", {1000, 2000, 5000});
    auto const begin = std::chrono::steady_clock::now();
    player.run();
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(200));
    EXPECT_EQ(player.heard.size(), 3U);
    EXPECT_GE(player.pauses, 2) << "outputs hand on what they have before it waits";
}

TEST(Playback, StopsBetweenFrames) {
    Player player;
    player.add("one", {1000, 2000, 3000});
    player.onFrame = [&] {
        if (player.heard.size() == 2) player.playback.stop();
    };
    player.run();
    EXPECT_EQ(player.heard.size(), 2U);
    Player waiting(0.001);
    waiting.add("one", {1000, 2000});
    waiting.onPause = [&] { waiting.playback.stop(); };
    waiting.run();
    EXPECT_EQ(waiting.heard.size(), 1U) << "nor does it wait for what is to come";
}

TEST(Playback, LeavesTheLoopToOthersInBetween) {
    Player player;
    std::vector<airspace::TimeMs> times(10'000);
    player.add("one", times);
    std::size_t atMyTurn = 0;
    player.playback.start();
    asio::post(player.context, [&] { atMyTurn = player.heard.size(); });
    player.context.run();
    EXPECT_GT(atMyTurn, 0U);
    EXPECT_LT(atMyTurn, times.size());
    EXPECT_EQ(player.heard.size(), times.size());
}

TEST(Playback, ARecordingThatCannotBeReadOnIsAFailureAndEndsForItself) {
    Player player;
    player.add("good", {1000, 2000});
    auto& bad = player.stations.add("bad");
    bad.recording =
        std::make_unique<FrameReader>(player.folder.write("bad", std::string(100'000, 'x')), airspace::StreamOptions());
    player.playback.add(bad);
    player.run();
    EXPECT_EQ(player.heard.size(), 2U);
    EXPECT_EQ(player.ends, 2);
    ASSERT_EQ(player.lines.size(), 1U);
    EXPECT_NE(player.lines[0].find("cannot detect the format"), std::string::npos) << player.lines[0];
}
