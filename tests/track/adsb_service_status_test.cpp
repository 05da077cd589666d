// SPDX-License-Identifier: MIT
#include <modes/adsb_service_status.h>

#include <gtest/gtest.h>

#include <type_traits>

namespace quorvel::modes {
namespace {

static_assert(std::is_same_v<std::underlying_type_t<ADSBServiceStatus::ReportMode>, std::uint32_t>);

TEST(ADSBServiceStatus, StartsAsServiceOneReportingEverySecond) {
    ADSBServiceStatus const status;
    EXPECT_EQ(status.sac(), 0);
    EXPECT_EQ(status.sic(), 0);
    EXPECT_EQ(status.serviceId(), 1);
    EXPECT_EQ(status.reportMode(), ADSBServiceStatus::PERIODIC);
    EXPECT_EQ(static_cast<unsigned>(status.reportMode()), 0U);
    EXPECT_EQ(status.reportPeriod(), 1000);
}

TEST(ADSBServiceStatus, KeepsWhatItIsGiven) {
    ADSBServiceStatus status;
    status.setSac(255);
    status.setSic(7);
    status.setServiceId(9);
    status.setReportMode(ADSBServiceStatus::ON_UPDATE);
    status.setReportPeriod(65535);
    EXPECT_EQ(status.sac(), 255);
    EXPECT_EQ(status.sic(), 7);
    EXPECT_EQ(status.serviceId(), 9);
    EXPECT_EQ(status.reportMode(), ADSBServiceStatus::ON_UPDATE);
    EXPECT_EQ(status.reportPeriod(), 65535);
}

} // namespace
} // namespace quorvel::modes
