// SPDX-License-Identifier: MIT
#include <modes/adsb_tracker.h>

#include "core/log_if_shown.h"
#include "track/adsb_tracker_impl.h"

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

ADSBTracker::ADSBTracker() : _impl(std::make_unique<Impl>()) { logIfShown(Log::Info, kTrackerModule, "Initialized."); }

ADSBTracker::~ADSBTracker() = default;

void ADSBTracker::reset() { _impl->targets = TargetIndex(); }

void ADSBTracker::setAltituteBaroChecking(bool enable, unsigned int period, unsigned int maxDifference) {
    _impl->altitudeChecking = enable;
    _impl->altitudeCheckPeriod = period;
    _impl->altitudeCheckMaxDifference = maxDifference;
}

std::shared_ptr<ADSBTarget> ADSBTracker::Impl::createTarget(unsigned int icaoAddr) {
    if (auto const* known = targets.find(icaoAddr)) {
        prefetch(**known);
        return *known;
    }
    auto const trackId = targets.nextNumber();
    if (trackId == 0) return {};
    auto target = std::make_shared<ADSBTarget>(icaoAddr);
    target->_trackId = trackId;
    targets.insert(target);
    return target;
}

std::shared_ptr<ADSBTarget> ADSBTracker::createTarget(unsigned int icaoAddr) { return _impl->createTarget(icaoAddr); }

unsigned int ADSBTracker::getNextTrackId() { return _impl->targets.nextNumber(); }

void ADSBTracker::Impl::renumber(ADSBTarget& target, unsigned int trackId) {
    targets.renumber(target._trackId, trackId);
    target._trackId = trackId;
}

std::shared_ptr<ADSBTarget> ADSBTracker::Impl::findTarget(unsigned int icaoAddr) const {
    auto const* found = targets.find(icaoAddr);
    return found ? *found : nullptr;
}

std::shared_ptr<ADSBTarget> ADSBTracker::findTarget(unsigned int icaoAddr) { return _impl->findTarget(icaoAddr); }

std::shared_ptr<ADSBTarget const> ADSBTracker::findConstTarget(unsigned int icaoAddr) const {
    return _impl->findTarget(icaoAddr);
}

std::vector<std::shared_ptr<ADSBTarget>> ADSBTracker::allTargets() const {
    std::vector<std::shared_ptr<ADSBTarget>> targets;
    targets.reserve(_impl->targets.size());
    for (std::size_t place = 0; place < _impl->targets.size(); ++place) {
        targets.push_back(_impl->targets.sharedAt(place));
    }
    return targets;
}

std::vector<std::shared_ptr<ADSBTarget>> ADSBTracker::allTargetsSince(unsigned long long since) const {
    return allTargetsSince(since, ~0ULL);
}

std::vector<std::shared_ptr<ADSBTarget>> ADSBTracker::allTargetsSince(
    unsigned long long since, unsigned long long until) const {
    std::vector<std::shared_ptr<ADSBTarget>> targets;
    for (std::size_t place = 0; place < _impl->targets.size(); ++place) {
        auto const time = _impl->targets.at(place).lastUpdate();
        if (time > since && time <= until) targets.push_back(_impl->targets.sharedAt(place));
    }
    return targets;
}

// Drops a target and lets the database learn from it. It is held meanwhile: a log handler may drop it too.
std::shared_ptr<ADSBTarget> ADSBTracker::Impl::kill(ADSBTarget const& target) {
    auto killed = *targets.find(target.icaoAddr());
    logIfShown(Log::Debug, kTrackerModule, "Target #%u killed.", killed->trackId());
    targets.remove(killed->icaoAddr());
    aircraftDb.updateAircraft(killed);
    return killed;
}

std::shared_ptr<ADSBTarget> ADSBTracker::killTarget(unsigned int const& trackId, unsigned int const& icaoAddr) {
    auto const* found = _impl->targets.find(icaoAddr);
    if (!found || (*found)->trackId() != trackId) return {};
    return _impl->kill(**found);
}

std::vector<std::shared_ptr<ADSBTarget>> ADSBTracker::killTargets(unsigned long long time) {
    std::vector<std::shared_ptr<ADSBTarget>> killed;
    for (std::size_t place = 0; place < _impl->targets.size();) {
        auto const& target = _impl->targets.at(place);
        if (target.lastUpdate() > time) {
            ++place;
            continue;
        }
        auto const address = target.icaoAddr();
        killed.push_back(_impl->kill(target));
        place = _impl->targets.placeOf(address);
    }
    return killed;
}

void ADSBTracker::updateTargetAltituteBaro(
    std::shared_ptr<ADSBTarget> const& target, int altitude, unsigned long long time) {
    if (target) _impl->updateAltitude(*target, altitude, time);
}

void ADSBTracker::Impl::updateAltitude(ADSBTarget& target, int altitude, unsigned long long time) const {
    // The product is one of 32-bit numbers; the age is one of 64-bit numbers and huge for a time before the
    // last altitude's, which therefore is never rejected.
    bool const recent = altitudeChecking && target.altitudeBaroValid() &&
                        time - target.altitudeBaroLastUpdate() < altitudeCheckPeriod * 1000U;
    auto const difference = std::llabs(static_cast<long long>(altitude) - target.altitudeBaro());
    if (recent && difference > static_cast<long long>(altitudeCheckMaxDifference)) return;
    target.setAltitudeBaro(altitude, time);
}

void ADSBTracker::setAircraftDbFile(std::string const& path) {
    _impl->aircraftDb.save();
    _impl->aircraftDb.load(path);
}

void ADSBTracker::saveAircraftDb() { _impl->aircraftDb.save(); }

} // namespace quorvel::modes
