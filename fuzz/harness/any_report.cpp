// SPDX-License-Identifier: MIT
#include "harness/any_report.h"

#include "harness/any_number.h"

namespace quorvel::fuzz {

namespace {

using Report = modes::ADSBTargetReport;

unsigned long long anyTime(Input& input) { return input.number<std::uint64_t>(); }

bool anyFlag(Input& input) { return (input.byte() & 1) != 0; }

void setIdentity(Report& report, Input& input) {
    report.setTrackId(input.number<std::uint32_t>());
    report.setTrackIdValid(anyFlag(input));
    report.setLastUpdate(anyTime(input));
    report.setIcaoAddress(input.number<std::uint32_t>());
    report.setIcaoAddressValid(anyFlag(input));
    report.setCallsign(input.bytes(input.byte() % 16));
    report.setCallsignLastUpdate(anyTime(input));
    report.setCallsignLastChange(anyTime(input));
    report.setEmitterCategory(input.byte());
    report.setEmitterCategoryLastUpdate(anyTime(input));
    report.setEmitterCategoryLastChange(anyTime(input));
    report.setSquawk(input.number<std::uint32_t>());
    report.setSquawkLastUpdate(anyTime(input));
}

void setMotion(Report& report, Input& input) {
    auto const latitude = anyNumber(input);
    report.setPosition(latitude, anyNumber(input));
    report.setPositionValid(anyFlag(input));
    report.setPositionLastUpdate(anyTime(input));
    report.setSignalAmplitude(input.byte());
    report.setAltitudeBaro(anyInteger(input));
    report.setAltitudeBaroLastUpdate(anyTime(input));
    report.setGroundSpeed(anyNumber(input));
    report.setHeading(anyNumber(input));
    report.setVerticalRateBaro(anyInteger(input));
    report.setVerticalRateBaroLastUpdate(anyTime(input));
    report.setGroundStatus(anyFlag(input));
}

void setQuality(Report& report, Input& input) {
    report.setMopsVersion(static_cast<modes::MOPSVersion>(input.number<std::uint32_t>()));
    report.setMopsVersionConfirmed(anyFlag(input));
    report.setMopsVersionLastChange(anyTime(input));
    report.setNUCp(input.byte());
    report.setNUCpValid(anyFlag(input));
    report.setNIC(input.byte());
    report.setNICValid(anyFlag(input));
    report.setPIC(input.byte());
    report.setPICValid(anyFlag(input));
    report.setSIL(input.byte());
    report.setSILValid(anyFlag(input));
}

} // namespace

std::shared_ptr<Report> anyReport(Input& input) {
    auto report = std::make_shared<Report>();
    setIdentity(*report, input);
    setMotion(*report, input);
    setQuality(*report, input);
    return report;
}

} // namespace quorvel::fuzz
