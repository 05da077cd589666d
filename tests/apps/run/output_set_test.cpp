// SPDX-License-Identifier: MIT
#include "run/output_set.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

using namespace quorvel;
using namespace quorvel;
using namespace quorvel::run;

namespace {

/// Which calls an output got, and when it fails.
struct Script {
    outputs::Output::Wants wants = outputs::Output::Wants::Pictures;
    bool wantsPicture = true;
    bool isWorthIt = true;
    std::string failsAt{};
    std::string told{};

    void tell(std::string const& what) {
        told += what + " ";
        if (what == failsAt) throw files::HostError("cannot write " + what);
    }
};

class Scripted : public outputs::Output {
public:
    explicit Scripted(Script& script) : _script(script) {}
    Wants wants() const override { return _script.wants; }
    bool isWorthRunningFor() const override { return _script.isWorthIt; }
    void heard(outputs::HeardFrame const&) override { _script.tell("heard"); }
    bool wantsPicture() override { return _script.wantsPicture; }
    void picture(outputs::Picture const&) override { _script.tell("picture"); }
    void flush() override { _script.tell("flush"); }
    void finish(outputs::Picture const&) override { _script.tell("finish"); }

private:
    Script& _script;
};

struct Set {
    std::vector<std::string> lines;
    int allGone = 0;
    int pictures = 0;
    Failures failures{[this](std::string const& line) { lines.push_back(line); }};
    OutputSet outputs{failures, [this] { ++allGone; }};

    explicit Set(std::vector<Script*> const& scripts) {
        for (auto* script : scripts) outputs.add(std::make_unique<Scripted>(*script));
    }
    void show() {
        outputs.show([this] {
            ++pictures;
            return outputs::Picture();
        });
    }
    void hear() {
        airspace::Frame const frame;
        airspace::Reply const reply;
        outputs.heard({frame, reply, nullptr});
    }
};

} // namespace

TEST(OutputSet, WantsWhatAnyOfItsOutputsWants) {
    Script pictures;
    Script frames{outputs::Output::Wants::EachFrame};
    Script aircraft{outputs::Output::Wants::FramesWithAircraft};
    EXPECT_FALSE(Set({&pictures}).outputs.wantsFrames());
    EXPECT_TRUE(Set({&pictures, &frames}).outputs.wantsFrames());
    EXPECT_FALSE(Set({&pictures, &frames}).outputs.wantsAircraft());
    EXPECT_TRUE(Set({&aircraft, &frames}).outputs.wantsAircraft());
}

TEST(OutputSet, TellsFramesToThoseThatWantThem) {
    Script pictures;
    Script frames{outputs::Output::Wants::EachFrame};
    Set({&pictures, &frames}).hear();
    EXPECT_EQ(pictures.told, "");
    EXPECT_EQ(frames.told, "heard ");
}

TEST(OutputSet, MakesOnePictureForAllAndNoneForNobody) {
    Script one;
    Script two;
    Script none;
    none.wantsPicture = false;
    Set set({&one, &none, &two});
    set.show();
    EXPECT_EQ(set.pictures, 1);
    EXPECT_EQ(one.told + two.told, "picture flush picture flush ");
    EXPECT_EQ(none.told, "flush ");
    Set idle({&none});
    idle.show();
    EXPECT_EQ(idle.pictures, 0);
}

TEST(OutputSet, LeavesOutAnOutputThatFailsAndGoesOnWithTheOthers) {
    Script failing;
    failing.failsAt = "picture";
    Script working;
    Set set({&failing, &working});
    set.show();
    set.show();
    set.outputs.finish(outputs::Picture());
    EXPECT_EQ(failing.told, "picture ");
    EXPECT_EQ(working.told, "picture flush picture flush finish flush ");
    EXPECT_EQ(set.lines, std::vector<std::string>{"cannot write picture"});
    EXPECT_EQ(set.allGone, 0);
}

TEST(OutputSet, TellsOnceThatTheLastOutputWorthRunningForHasGone) {
    Script failing;
    failing.failsAt = "flush";
    Script table;
    table.isWorthIt = false;
    Set set({&table, &failing});
    set.outputs.flush();
    set.outputs.flush();
    EXPECT_EQ(set.allGone, 1);
    Set never({&table});
    never.outputs.flush();
    EXPECT_EQ(never.allGone, 0) << "there was none from the start";
}
