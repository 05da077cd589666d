// SPDX-License-Identifier: MIT
// Comm-B replies do not name their register: what squitters tell of the aircraft decides. Simulated traffic knows.
#include "simulate/traffic.h"

#include <airspace/message.h>
#include <airspace/register_choice.h>

#include <gtest/gtest.h>

#include <map>

namespace airspace = quorvel::airspace;
namespace simulate = quorvel::simulate;

namespace {

// What the squitters of an aircraft have told.
struct Squittered {
    airspace::KnownState state;
    bool hasPosition = false;
    bool hasVelocity = false;

    template <class Other> void operator()(Other const&) {}

    void operator()(airspace::AirbornePosition const& position) {
        hasPosition = true;
        if (position.altitudeType == airspace::AltitudeType::Barometric) {
            state.altitudeFt = position.altitude.altitudeFt;
        }
    }

    void operator()(airspace::AirborneVelocity const& velocity) {
        hasVelocity = true;
        state.groundSpeedKt = velocity.horizontal.groundSpeedKt();
        state.trackDegrees = velocity.horizontal.trackDegrees();
        state.verticalRateFtMin = velocity.verticalRateFtMin;
        bool const isTrue = velocity.horizontal.airspeedType == airspace::AirspeedType::True;
        (isTrue ? state.trueAirspeedKt : state.indicatedAirspeedKt) = velocity.horizontal.airspeedKt;
    }

    void operator()(airspace::Identification const& identification) { state.callsign = identification.callsign; }

    void operator()(airspace::TargetState const& target) {
        state.selectedAltitudeFt = target.selectedAltitudeFt;
        state.pressureSettingHpa = target.pressureSettingHpa;
    }
};

// A report 1,7 of a single register is a single bit.
bool hasTwoFields(airspace::CommB const& content) {
    auto const* const capability = std::get_if<airspace::CommonUsageCapability>(&content);
    return capability == nullptr || capability->served().size() >= 2;
}

struct Score {
    int replies = 0;
    int right = 0;
    int unsure = 0;
    int wrong = 0;
};

void score(airspace::RegisterChoice const& choice, unsigned truth, Score& score) {
    ++score.replies;
    bool const isRight = choice.best && static_cast<unsigned>(*choice.best) == truth;
    score.right += isRight ? 1 : 0;
    score.unsure += choice.isUnsure ? 1 : 0;
    score.wrong += isRight ? 0 : 1;
}

void scoreSky(std::uint64_t seed, Score& all) {
    simulate::Settings settings;
    settings.aircraft = 100;
    settings.seconds = 90;
    settings.seed = seed;
    simulate::Traffic traffic(settings);
    std::map<std::size_t, Squittered> known;
    while (auto const frame = traffic.next()) {
        auto const message = airspace::read(frame->bytes);
        auto& squittered = known[frame->aircraft];
        if (auto const* const squitter = std::get_if<airspace::ExtendedSquitter>(&message)) {
            std::visit(squittered, squitter->content);
        }
        auto const mb = airspace::registerBytes(message);
        if (mb.empty() || !squittered.hasPosition || !squittered.hasVelocity) continue;
        auto const held = static_cast<airspace::Register>(frame->registerNumber);
        if (!hasTwoFields(airspace::readRegister(mb, held))) continue;
        score(airspace::chooseRegister(mb, squittered.state), frame->registerNumber, all);
    }
}

} // namespace

TEST(RegisterChoiceInSimulatedSkies, IsRightWhenSquittersTellOfTheAircraft) {
    Score all;
    for (std::uint64_t seed = 1; seed <= 10; ++seed) scoreSky(seed, all);
    RecordProperty("replies", all.replies);
    RecordProperty("right", all.right);
    RecordProperty("unsure", all.unsure);
    RecordProperty("wrong", all.wrong);
    ASSERT_GT(all.replies, 10'000);
    EXPECT_GE(all.right, 0.995 * all.replies) << all.replies << " replies, " << all.unsure << " unsure";
    EXPECT_LE(all.wrong, 0.0005 * all.replies) << all.replies << " replies, " << all.unsure << " unsure";
}
