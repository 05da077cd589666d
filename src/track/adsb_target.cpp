// SPDX-License-Identifier: MIT
#include <modes/adsb_target.h>

#include "core/log_if_shown.h"
#include "track/global_position.h"
#include "track/quality_indicators.h"

#include <numeric>

namespace quorvel::modes {

namespace {

std::string const kModule = "ADSBTarget";

// Deliberate: hosts know this text, capital O included, which is not a standard conversion. It reaches the
// formatting as an argument, which compilers do not check as they check literals.
constexpr char kSquawkChange[] = "Squawk Change old = %.4O new = %.4O";

void logNumbers(Log::Level level, char const* format, unsigned int before, unsigned int after) {
    logIfShown(level, kModule, format, before, after);
}

template <class Counts> unsigned int countAt(Counts const& counts, std::size_t index) {
    return index < counts.size() ? counts[index] : 0;
}

template <class Counts> void increaseAt(Counts& counts, std::size_t index) {
    if (index < counts.size()) ++counts[index];
}

} // namespace

ADSBTarget::ADSBTarget(unsigned int icaoAddr) : _icaoAddr(icaoAddr) {}

unsigned int ADSBTarget::statisticDfMsgCount(DFMessage::DownlinkFormat format) const {
    return countAt(_dfCounts, format);
}

unsigned int ADSBTarget::statisticDfMsgCount() const { return std::accumulate(_dfCounts.begin(), _dfCounts.end(), 0U); }

unsigned int ADSBTarget::statisticADSBMsgCount(ADSBMessage::ADSBMessageType type) const {
    return countAt(_adsbCounts, type);
}

void ADSBTarget::setLastUpdate(unsigned long long time) { _lastUpdate = time; }

void ADSBTarget::setCallsign(std::string const& callsign, unsigned long long time) {
    if (_callsign.isChange(callsign) && !_callsign.value.empty()) {
        logIfShown(Log::Info, kModule, "Callsign Change old = %s new = %s", _callsign.value.c_str(), callsign.c_str());
    }
    _callsign.report(callsign, time);
}

void ADSBTarget::setCallsign(std::string const& callsign, unsigned long long time, unsigned long long change) {
    setCallsign(callsign, time);
    _callsign.lastChange = change;
}

void ADSBTarget::setEmitterCategory(unsigned char category, unsigned long long time) {
    if (category != _emitterCategory.value) {
        logNumbers(Log::Debug, "Emitter category change old = %u new = %u", _emitterCategory.value, category);
    }
    _emitterCategory.report(category, time);
}

void ADSBTarget::setEmitterCategory(unsigned char category, unsigned long long time, unsigned long long change) {
    setEmitterCategory(category, time);
    _emitterCategory.lastChange = change;
}

void ADSBTarget::setSquawk(unsigned int squawk, unsigned long long time) {
    if (_squawk.isChange(squawk) && _squawk.value != 0) {
        logNumbers(Log::Info, kSquawkChange, _squawk.value, squawk);
    }
    _squawk.report(squawk, time);
}

void ADSBTarget::setPosition(double latitude, double longitude, unsigned long long time) {
    _position.report({latitude, longitude}, time);
}

void ADSBTarget::setSignalAmplitude(unsigned char amplitude, unsigned long long time) {
    _signalAmplitude.report(amplitude, time);
}

void ADSBTarget::setAltitudeBaro(int altitude, unsigned long long time) { _altitudeBaro.report(altitude, time); }

void ADSBTarget::setGroundSpeed(double groundSpeed, unsigned long long time) { _groundSpeed.report(groundSpeed, time); }

void ADSBTarget::setHeading(double heading, unsigned long long time) {
    _heading.report(heading, time);
    _headingValid = true;
}

void ADSBTarget::setVerticalRateBaro(int verticalRate, unsigned long long time) {
    _verticalRateBaro.report(verticalRate, time);
}

void ADSBTarget::setGroundStatus(GroundStatus status, unsigned long long time) {
    _groundStatus.reportDifferent(status, time);
}

void ADSBTarget::setSpi(bool spi, unsigned long long time) {
    if (spi != _spi.value) {
        logIfShown(Log::Info, kModule, "SPI change old = %d new = %d", _spi.value, spi);
    }
    _spi.report(spi, time);
}

void ADSBTarget::setAlert(bool alert, unsigned long long time) {
    if (alert != _alert.value) {
        logIfShown(Log::Info, kModule, "Alert status change old = %d new = %d", _alert.value, alert);
    }
    _alert.report(alert, time);
}

void ADSBTarget::setMOPSVersion(MOPSVersion const& version, unsigned long long time) {
    if (version != _mopsVersion.value) resetQualityIndicators();
    _mopsVersion.reportDifferent(version, time);
}

void ADSBTarget::setMOPSVersionConfirmed(unsigned long long time) {
    if (!_mopsVersionConfirmed) _mopsVersion.lastChange = time;
    _mopsVersionConfirmed = true;
    _mopsVersion.lastUpdate = time;
}

void ADSBTarget::setMOPSVersionAssumed(unsigned long long time) {
    if (_mopsVersionConfirmed) _mopsVersion.lastChange = time;
    _mopsVersionConfirmed = false;
    _mopsVersion.lastUpdate = time;
}

void ADSBTarget::setNUCp(unsigned char nucp, unsigned long long time) { _nucp.report(nucp, time); }

void ADSBTarget::setNUCr(unsigned char nucr, unsigned long long time) {
    if (_mopsVersion.value == MOPS_V0) _nucr.report(nucr, time);
}

void ADSBTarget::setNIC(unsigned char nic, unsigned long long time) { _nic.report(nic, time); }

void ADSBTarget::setNICSupplementA(bool supplement, unsigned long long time) {
    _nicSupplementA.report(supplement, time);
}

void ADSBTarget::setNICSupplementB(bool supplement, unsigned long long time) {
    _nicSupplementB.report(supplement, time);
}

void ADSBTarget::setNICSupplementC(bool supplement, unsigned long long time) {
    _nicSupplementC.report(supplement, time);
}

void ADSBTarget::setPIC(unsigned char pic, unsigned long long time) { _pic.report(pic, time); }

void ADSBTarget::setNACp(unsigned char nacp, unsigned long long time) { _nacp.report(nacp, time); }

void ADSBTarget::setSIL(unsigned char sil, unsigned long long time) { _sil.report(sil, time); }

void ADSBTarget::resetQualityIndicators() {
    for (auto* item : {&_nucp, &_nic, &_pic, &_nacp, &_sil}) item->reset();
}

void ADSBTarget::updateQualityIndicators(unsigned char typeCode, unsigned long long time) {
    NICSupplements const supplements{NICSupplements::stateOf(_nicSupplementA), NICSupplements::stateOf(_nicSupplementB),
        NICSupplements::stateOf(_nicSupplementC)};
    auto const setPositionQuality = [&](PositionQuality const& quality) {
        setNUCp(quality.nucp, time);
        setNIC(quality.nic, time);
        setPIC(quality.pic, time);
    };
    switch (_mopsVersion.value) {
    case MOPS_V0: {
        auto const quality = positionQualityV0(typeCode);
        setPositionQuality(quality);
        setNACp(quality.nacp, time);
        setSIL(quality.sil, time);
        return;
    }
    case MOPS_V1: return setPositionQuality(positionQualityV1(typeCode, supplements));
    case MOPS_V2: return setPositionQuality(positionQualityV2(typeCode, supplements));
    default: return resetQualityIndicators();
    }
}

void ADSBTarget::increaseStatistic(DFMessage::DownlinkFormat format, unsigned long long time) {
    _statisticLastUpdate = time;
    increaseAt(_dfCounts, format);
}

void ADSBTarget::increaseStatistic(ADSBMessage::ADSBMessageType type, unsigned long long time) {
    _statisticLastUpdate = time;
    increaseAt(_adsbCounts, type);
}

void ADSBTarget::resetStatistic() {
    _dfCounts.fill(0);
    _adsbCounts.fill(0);
    _statisticLastUpdate = 0;
}

void ADSBTarget::decodeCPRPosition() {
    if (auto const position = globalPosition(_evenFrame, _oddFrame)) {
        setPosition(position->latitude, position->longitude, position->time);
    }
}

} // namespace quorvel::modes
