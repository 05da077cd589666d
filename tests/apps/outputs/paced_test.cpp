// SPDX-License-Identifier: MIT
#include "outputs/paced.h"

#include "pictures.h"

#include <gtest/gtest.h>

using namespace quorvel;
using namespace quorvel::outputs::test;
using namespace std::chrono_literals;
using outputs::Output;

namespace {

struct Calls {
    int frames = 0;
    std::vector<airspace::TimeMs> pictures;
    std::vector<airspace::TimeMs> last;
};

class Recorder : public Output {
public:
    explicit Recorder(Calls& calls) : _calls(calls) {}
    Wants wants() const override { return Wants::EachFrame; }
    void heard(outputs::HeardFrame const&) override { ++_calls.frames; }
    void picture(outputs::Picture const& picture) override { _calls.pictures.push_back(picture.now); }
    void finish(outputs::Picture const& last) override { _calls.last.push_back(last.now); }

private:
    Calls& _calls;
};

outputs::Picture pictureAt(airspace::TimeMs now) {
    outputs::Picture picture;
    picture.now = now;
    return picture;
}

} // namespace

TEST(Paced, PassesOnePictureOnInEachInterval) {
    Calls calls;
    outputs::Paced::SteadyTime now{};
    outputs::Paced paced(std::make_unique<Recorder>(calls), 1000ms, [&] { return now; });
    paced.picture(pictureAt(1));
    now += 999ms;
    paced.picture(pictureAt(2));
    now += 1ms;
    paced.picture(pictureAt(3));
    now += 5s;
    paced.picture(pictureAt(4));
    EXPECT_EQ(calls.pictures, (std::vector<airspace::TimeMs>{1, 3, 4}));
}

TEST(Paced, AlwaysPassesTheLastPictureOn) {
    Calls calls;
    outputs::Paced paced(std::make_unique<Recorder>(calls), 1000ms, [] { return outputs::Paced::SteadyTime{}; });
    paced.picture(pictureAt(1));
    paced.finish(pictureAt(2));
    EXPECT_EQ(calls.last, (std::vector<airspace::TimeMs>{2}));
}

TEST(Paced, PassesEveryFrameOn) {
    Calls calls;
    outputs::Paced paced(std::make_unique<Recorder>(calls), 1000ms);
    EXPECT_EQ(paced.wants(), Output::Wants::EachFrame);
    for (int i = 0; i < 3; ++i) paced.heard({frameOf("7700"), {}, nullptr});
    EXPECT_EQ(calls.frames, 3);
}
