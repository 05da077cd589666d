// SPDX-License-Identifier: MIT
#include "outputs/paced.h"

#include "pictures.h"

#include <gtest/gtest.h>

using namespace quorvel;
using namespace quorvel::host::test;
using namespace std::chrono_literals;
using host::Output;

namespace {

struct Calls {
    int frames = 0;
    std::vector<host::TimeMs> pictures;
    std::vector<host::TimeMs> last;
};

class Recorder : public Output {
public:
    explicit Recorder(Calls& calls) : _calls(calls) {}
    Wants wants() const override { return Wants::EachFrame; }
    void heard(host::HeardFrame const&) override { ++_calls.frames; }
    void picture(host::Picture const& picture) override { _calls.pictures.push_back(picture.now); }
    void finish(host::Picture const& last) override { _calls.last.push_back(last.now); }

private:
    Calls& _calls;
};

host::Picture pictureAt(host::TimeMs now) {
    host::Picture picture;
    picture.now = now;
    return picture;
}

} // namespace

TEST(Paced, PassesOnePictureOnInEachInterval) {
    Calls calls;
    host::Paced::SteadyTime now{};
    host::Paced paced(std::make_unique<Recorder>(calls), 1000ms, [&] { return now; });
    paced.picture(pictureAt(1));
    now += 999ms;
    paced.picture(pictureAt(2));
    now += 1ms;
    paced.picture(pictureAt(3));
    now += 5s;
    paced.picture(pictureAt(4));
    EXPECT_EQ(calls.pictures, (std::vector<host::TimeMs>{1, 3, 4}));
}

TEST(Paced, AlwaysPassesTheLastPictureOn) {
    Calls calls;
    host::Paced paced(std::make_unique<Recorder>(calls), 1000ms, [] { return host::Paced::SteadyTime{}; });
    paced.picture(pictureAt(1));
    paced.finish(pictureAt(2));
    EXPECT_EQ(calls.last, (std::vector<host::TimeMs>{2}));
}

TEST(Paced, PassesEveryFrameOn) {
    Calls calls;
    host::Paced paced(std::make_unique<Recorder>(calls), 1000ms);
    EXPECT_EQ(paced.wants(), Output::Wants::EachFrame);
    for (int i = 0; i < 3; ++i) paced.heard({frameOf("7700"), nullptr, nullptr});
    EXPECT_EQ(calls.frames, 3);
}
