// SPDX-License-Identifier: MIT
#include <modes/adsb_tracker.h>

#include <modes/log.h>

#include "track/track_numbers.h"
#include "track/tracker_module.h"

#include <cstdlib>

namespace quorvel::modes {

ADSBTracker::ADSBTracker() : _trackNumbers(std::make_unique<TrackNumbers>()) {
    Log::log(Log::Info, kTrackerModule, "Initialized.");
}

ADSBTracker::~ADSBTracker() = default;

void ADSBTracker::reset() {
    _targets.clear();
    *_trackNumbers = TrackNumbers();
}

void ADSBTracker::setAltituteBaroChecking(bool enable, unsigned int period, unsigned int maxDifference) {
    _altitudeChecking = enable;
    _altitudeCheckPeriod = period;
    _altitudeCheckMaxDifference = maxDifference;
}

std::shared_ptr<ADSBTarget> ADSBTracker::createTarget(unsigned int icaoAddr) {
    if (auto known = findTarget(icaoAddr)) return known;
    auto const trackId = getNextTrackId();
    if (trackId == 0) return {};
    auto target = std::make_shared<ADSBTarget>(icaoAddr);
    _targets.emplace(icaoAddr, target);
    target->_trackId = trackId;
    _trackNumbers->hold(trackId);
    return target;
}

unsigned int ADSBTracker::getNextTrackId() { return _trackNumbers->next(); }

void ADSBTracker::renumber(ADSBTarget& target, unsigned int trackId) {
    _trackNumbers->release(target._trackId);
    _trackNumbers->hold(trackId);
    target._trackId = trackId;
}

std::shared_ptr<ADSBTarget> ADSBTracker::findTarget(unsigned int icaoAddr) {
    auto const found = _targets.find(icaoAddr);
    return found == _targets.end() ? nullptr : found->second;
}

std::shared_ptr<ADSBTarget const> ADSBTracker::findConstTarget(unsigned int icaoAddr) const {
    auto const found = _targets.find(icaoAddr);
    return found == _targets.end() ? nullptr : found->second;
}

std::vector<std::shared_ptr<ADSBTarget>> ADSBTracker::allTargets() const {
    std::vector<std::shared_ptr<ADSBTarget>> targets;
    targets.reserve(_targets.size());
    for (auto const& [address, target] : _targets) targets.push_back(target);
    return targets;
}

std::vector<std::shared_ptr<ADSBTarget>> ADSBTracker::allTargetsSince(unsigned long long since) const {
    return allTargetsSince(since, ~0ULL);
}

std::vector<std::shared_ptr<ADSBTarget>> ADSBTracker::allTargetsSince(unsigned long long since,
                                                                      unsigned long long until) const {
    std::vector<std::shared_ptr<ADSBTarget>> targets;
    for (auto const& [address, target] : _targets) {
        if (target->lastUpdate() > since && target->lastUpdate() <= until) targets.push_back(target);
    }
    return targets;
}

// Gives up the number of a target that is being dropped, and lets the database learn from it.
void ADSBTracker::retire(std::shared_ptr<ADSBTarget> const& target) {
    _trackNumbers->release(target->trackId());
    _aircraftDb.updateAircraft(target);
}

std::shared_ptr<ADSBTarget> ADSBTracker::killTarget(unsigned int const& trackId,
                                                    unsigned int const& icaoAddr) {
    auto const found = _targets.find(icaoAddr);
    if (found == _targets.end() || found->second->trackId() != trackId) return {};
    auto target = found->second;
    Log::log(Log::Debug, kTrackerModule, "Target #%u killed.", target->trackId());
    _targets.erase(found);
    retire(target);
    return target;
}

std::vector<std::shared_ptr<ADSBTarget>> ADSBTracker::killTargets(unsigned long long time) {
    std::vector<std::shared_ptr<ADSBTarget>> killed;
    for (auto entry = _targets.begin(); entry != _targets.end();) {
        auto const target = entry->second;
        if (target->lastUpdate() > time) {
            ++entry;
            continue;
        }
        Log::log(Log::Debug, kTrackerModule, "Target #%u killed.", target->trackId());
        killed.push_back(target);
        entry = _targets.erase(entry);
        retire(target);
    }
    return killed;
}

void ADSBTracker::updateTargetAltituteBaro(std::shared_ptr<ADSBTarget> const& target, int altitude,
                                           unsigned long long time) {
    if (!target) return;
    // The product is one of 32-bit numbers; the age is one of 64-bit numbers and huge for a time before the
    // last altitude's, which therefore is never rejected.
    bool const recent = _altitudeChecking && target->altitudeBaroValid() &&
                        time - target->altitudeBaroLastUpdate() < _altitudeCheckPeriod * 1000U;
    auto const difference = std::llabs(static_cast<long long>(altitude) - target->altitudeBaro());
    if (recent && difference > static_cast<long long>(_altitudeCheckMaxDifference)) return;
    target->setAltitudeBaro(altitude, time);
}

void ADSBTracker::setAircraftDbFile(std::string const& path) {
    _aircraftDb.save();
    _aircraftDb.load(path);
}

void ADSBTracker::saveAircraftDb() { _aircraftDb.save(); }

} // namespace quorvel::modes
