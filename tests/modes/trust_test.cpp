// SPDX-License-Identifier: MIT
#include "modes/trust.h"

#include "reference/grading.h"
#include "support/random_bytes.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <utility>
#include <vector>

using namespace quorvel::modes;
using test::Noise;

namespace {

constexpr unsigned kAddress = 0x4840D6;
constexpr std::int64_t kNow = 1'714'566'896;

// Ten replies to interrogator 5 of an aircraft that is known, the last of them at `now`.
void makeInterrogatorTrusted(Trust& trust, std::int64_t now) {
    trust.gradeSquitter(0x111111, now);
    for (int reply = 0; reply < 10; ++reply) trust.gradeAllCall(0x111111, 5, now);
}

} // namespace

TEST(Trust, KnowsAnAddressForTenMinutes) {
    Trust trust;
    EXPECT_EQ(trust.gradeAltitude(kAddress, false, kNow), ModeSMessage::LOW);
    EXPECT_EQ(trust.gradeSquitter(kAddress, kNow), ModeSMessage::HIGH);
    EXPECT_EQ(trust.gradeAltitude(kAddress, false, kNow + 600), ModeSMessage::HIGH);
    EXPECT_EQ(trust.gradeIdentity(kAddress, 01234, kNow + 1200), ModeSMessage::HIGH);
    EXPECT_EQ(trust.gradeIdentity(kAddress, 01234, kNow + 1801), ModeSMessage::LOW);
}

TEST(Trust, BelievesNoMetricAltitudeButTakesItAsASignOfLife) {
    Trust trust;
    EXPECT_EQ(trust.gradeAltitude(kAddress, true, kNow), ModeSMessage::NONE);
    trust.gradeSquitter(kAddress, kNow);
    EXPECT_EQ(trust.gradeAltitude(kAddress, true, kNow + 600), ModeSMessage::NONE);
    EXPECT_EQ(trust.gradeAltitude(kAddress, false, kNow + 1200), ModeSMessage::HIGH);
}

TEST(Trust, BelievesNoIdentityThatNoCodeHas) {
    Trust trust;
    EXPECT_EQ(trust.gradeIdentity(kAddress, 4095, kNow), ModeSMessage::LOW);
    EXPECT_EQ(trust.gradeIdentity(kAddress, 4096, kNow), ModeSMessage::NONE);
}

TEST(Trust, BelievesNoReplyToAnInterrogatorThatCannotBe) {
    Trust trust;
    trust.gradeSquitter(kAddress, kNow);
    EXPECT_EQ(trust.gradeAllCall(kAddress, 80, kNow), ModeSMessage::NONE);
    EXPECT_EQ(trust.gradeAllCall(kAddress, 79, kNow), ModeSMessage::LOW);
}

TEST(Trust, LearnsAnAddressFromAnInterrogatorThatIsTrusted) {
    Trust trust;
    makeInterrogatorTrusted(trust, kNow);
    EXPECT_EQ(trust.gradeAllCall(kAddress, 5, kNow + 61), ModeSMessage::NONE);
    EXPECT_EQ(trust.gradeAllCall(kAddress, 5, kNow + 60), ModeSMessage::HIGH);
    EXPECT_EQ(trust.gradeAltitude(kAddress, false, kNow + 60), ModeSMessage::HIGH);
}

TEST(Trust, GoesByTheTimeThatItIsGivenAlone) {
    for (std::int64_t const start : {std::int64_t{0}, std::int64_t{30}, std::int64_t{1} << 40}) {
        Trust trust;
        EXPECT_EQ(trust.gradeAllCall(kAddress, 3, start), ModeSMessage::NONE);
        trust.gradeSquitter(kAddress, start);
        EXPECT_EQ(trust.gradeAllCall(kAddress, 3, start), ModeSMessage::LOW);
        EXPECT_EQ(trust.gradeAllCall(kAddress, 3, start + 60), ModeSMessage::MEDIUM);
        EXPECT_EQ(trust.gradeAllCall(kAddress, 3, start + 121), ModeSMessage::LOW);
        EXPECT_EQ(trust.gradeAltitude(kAddress, false, start + 722), ModeSMessage::LOW);
    }
}

namespace {

constexpr std::uint64_t kSeed = 20261122;

// Replies of a few aircraft to a few interrogators, so that they meet, among replies of as many others as
// said. The clock goes on by one of the pauses now and then.
void expectPlainGrades(unsigned others, std::vector<std::int64_t> const& pauses) {
    Noise noise(kSeed);
    Trust trust;
    reference::Grading plain;
    auto now = kNow;
    for (unsigned i = 0; i < 100'000; ++i) {
        if (noise.below(8) == 0) now += pauses[static_cast<std::size_t>(noise.below(pauses.size()))];
        plain.setNow(now);
        auto const address = 0x400000 + static_cast<unsigned>(noise.below(i % 5 == 0 ? 12 + others : 12));
        auto const interrogator = static_cast<unsigned>(noise.below(6) == 0 ? 76 + noise.below(6) : noise.below(3));
        auto const [grade, expected] = [&] {
            switch (noise.below(8)) {
            case 0: return std::pair(trust.gradeSquitter(address, now), plain.squitter(address));
            case 1: return std::pair(trust.gradeAltitude(address, false, now), plain.hiddenAddress(address));
            case 2: return std::pair(trust.gradeIdentity(address, 07700, now), plain.hiddenAddress(address));
            default:
                return std::pair(trust.gradeAllCall(address, interrogator, now), plain.allCall(address, interrogator));
            }
        }();
        ASSERT_EQ(grade, expected) << "seed " << kSeed << ", " << i;
    }
}

} // namespace

TEST(Trust, GradesAsThePlainRulesDo) { expectPlainGrades(5000, {0, 0, 0, 0, 1, 6, 59, 60, 61, 599, 600, 601}); }

// Stale addresses that had to make room would be forgotten: those of the plain rules never are.
TEST(Trust, GradesAsThePlainRulesDoWhenTheClockIsSetBack) {
    expectPlainGrades(0, {0, 0, 0, 0, 1, 6, 59, 60, 61, 599, 600, 601, -5, -100});
}
