// SPDX-License-Identifier: MIT
#include <modes/adsb_tracker.h>

#include <modes/log.h>

#include "track/target_index.h"
#include "track/tracker_module.h"

#include <cstdlib>

namespace quorvel::modes {

namespace {

// Thousands of targets are in no near cache when their next reply comes: what it will touch is fetched while
// its payload is being decoded.
void prefetch(ADSBTarget const& target) {
#if defined(__GNUC__)
    auto const* bytes = reinterpret_cast<char const*>(&target);
    for (std::size_t at = 0; at < 512; at += 64) __builtin_prefetch(bytes + at, 1);
#endif
}

} // namespace

ADSBTracker::ADSBTracker() : _targets(std::make_unique<TargetIndex>()) {
    Log::log(Log::Info, kTrackerModule, "Initialized.");
}

ADSBTracker::~ADSBTracker() = default;

void ADSBTracker::reset() { *_targets = TargetIndex(); }

void ADSBTracker::setAltituteBaroChecking(bool enable, unsigned int period, unsigned int maxDifference) {
    _altitudeChecking = enable;
    _altitudeCheckPeriod = period;
    _altitudeCheckMaxDifference = maxDifference;
}

std::shared_ptr<ADSBTarget> ADSBTracker::createTarget(unsigned int icaoAddr) {
    if (auto const* known = _targets->find(icaoAddr)) {
        prefetch(**known);
        return *known;
    }
    auto const trackId = getNextTrackId();
    if (trackId == 0) return {};
    auto target = std::make_shared<ADSBTarget>(icaoAddr);
    target->_trackId = trackId;
    _targets->insert(target);
    return target;
}

unsigned int ADSBTracker::getNextTrackId() { return _targets->nextNumber(); }

void ADSBTracker::renumber(ADSBTarget& target, unsigned int trackId) {
    _targets->renumber(target._trackId, trackId);
    target._trackId = trackId;
}

std::shared_ptr<ADSBTarget> ADSBTracker::findTarget(unsigned int icaoAddr) {
    auto const* found = _targets->find(icaoAddr);
    return found ? *found : nullptr;
}

std::shared_ptr<ADSBTarget const> ADSBTracker::findConstTarget(unsigned int icaoAddr) const {
    auto const* found = _targets->find(icaoAddr);
    return found ? *found : nullptr;
}

std::vector<std::shared_ptr<ADSBTarget>> ADSBTracker::allTargets() const {
    std::vector<std::shared_ptr<ADSBTarget>> targets;
    targets.reserve(_targets->size());
    for (std::size_t place = 0; place < _targets->size(); ++place) {
        targets.push_back(_targets->sharedAt(place));
    }
    return targets;
}

std::vector<std::shared_ptr<ADSBTarget>> ADSBTracker::allTargetsSince(unsigned long long since) const {
    return allTargetsSince(since, ~0ULL);
}

std::vector<std::shared_ptr<ADSBTarget>> ADSBTracker::allTargetsSince(unsigned long long since,
                                                                      unsigned long long until) const {
    std::vector<std::shared_ptr<ADSBTarget>> targets;
    for (std::size_t place = 0; place < _targets->size(); ++place) {
        auto const time = _targets->at(place).lastUpdate();
        if (time > since && time <= until) targets.push_back(_targets->sharedAt(place));
    }
    return targets;
}

// Drops a target and lets the database learn from it. It is held meanwhile: a log handler may drop it too.
std::shared_ptr<ADSBTarget> ADSBTracker::kill(ADSBTarget const& target) {
    auto killed = *_targets->find(target.icaoAddr());
    Log::log(Log::Debug, kTrackerModule, "Target #%u killed.", killed->trackId());
    _targets->remove(killed->icaoAddr());
    _aircraftDb.updateAircraft(killed);
    return killed;
}

std::shared_ptr<ADSBTarget> ADSBTracker::killTarget(unsigned int const& trackId,
                                                    unsigned int const& icaoAddr) {
    auto const* found = _targets->find(icaoAddr);
    if (!found || (*found)->trackId() != trackId) return {};
    return kill(**found);
}

std::vector<std::shared_ptr<ADSBTarget>> ADSBTracker::killTargets(unsigned long long time) {
    std::vector<std::shared_ptr<ADSBTarget>> killed;
    for (std::size_t place = 0; place < _targets->size();) {
        auto const& target = _targets->at(place);
        if (target.lastUpdate() > time) {
            ++place;
            continue;
        }
        auto const address = target.icaoAddr();
        killed.push_back(kill(target));
        place = _targets->placeOf(address);
    }
    return killed;
}

void ADSBTracker::updateTargetAltituteBaro(std::shared_ptr<ADSBTarget> const& target, int altitude,
                                           unsigned long long time) {
    if (target) updateAltitude(*target, altitude, time);
}

void ADSBTracker::updateAltitude(ADSBTarget& target, int altitude, unsigned long long time) {
    // The product is one of 32-bit numbers; the age is one of 64-bit numbers and huge for a time before the
    // last altitude's, which therefore is never rejected.
    bool const recent = _altitudeChecking && target.altitudeBaroValid() &&
                        time - target.altitudeBaroLastUpdate() < _altitudeCheckPeriod * 1000U;
    auto const difference = std::llabs(static_cast<long long>(altitude) - target.altitudeBaro());
    if (recent && difference > static_cast<long long>(_altitudeCheckMaxDifference)) return;
    target.setAltitudeBaro(altitude, time);
}

void ADSBTracker::setAircraftDbFile(std::string const& path) {
    _aircraftDb.save();
    _aircraftDb.load(path);
}

void ADSBTracker::saveAircraftDb() { _aircraftDb.save(); }

} // namespace quorvel::modes
