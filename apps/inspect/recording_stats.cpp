// SPDX-License-Identifier: MIT
#include "inspect/recording_stats.h"

#include "inspect/dissection.h"

namespace quorvel::inspect {

namespace {

constexpr airspace::TimeMs kSilence = 300'000; // ms
constexpr airspace::TimeMs kDropInterval = 1'000;

airspace::SkyOptions optionsFor(bool isTimed) {
    airspace::SkyOptions options;
    options.positions.checksSpeed = isTimed;
    options.timeout = isTimed ? kSilence : 0;
    return options;
}

} // namespace

RecordingStats::RecordingStats(bool isTimed) : _isTimed(isTimed), _sky(optionsFor(isTimed)) {}

void RecordingStats::take(airspace::Frame const& frame) {
    if (_isTimed) _rates.take(frame.time);
    if (frame.signal != 0) ++_signals[frame.signal * kSignalBands / 256];
    auto const reply = _sky.take(frame);
    if (reply.format) countParity(reply);
    if (reply.typeCode) ++_typeCodes[*reply.typeCode];
    if (reply.isTracked) countAircraft(reply, frame.time);
    if (frame.time < _lastDrop + kDropInterval) return;
    _lastDrop = frame.time;
    _sky.dropSilent(frame.time);
}

void RecordingStats::countParity(airspace::Reply const& reply) {
    switch (reply.overlay) {
    case airspace::Overlay::Nothing:
        ++(!reply.isDecoded ? _parity.wrong : reply.repairs == 0 ? _parity.right : _parity.repaired);
        return;
    case airspace::Overlay::Interrogator:
        ++(reply.isDecoded && isInterrogator(reply.overlaid) ? _parity.right : _parity.wrong);
        return;
    case airspace::Overlay::Address: ++_parity.overlaid; return;
    case airspace::Overlay::Unknown: ++_parity.unknown; return;
    }
}

void RecordingStats::countAircraft(airspace::Reply const& reply, airspace::TimeMs time) {
    auto const aircraft = _sky.find(reply, time);
    auto& tally = _aircraft[airspace::addressText(aircraft->address, aircraft->addressKind)];
    ++tally.replies;
    tally.callsign = aircraft->callsign.value.value_or(tally.callsign);
    if (aircraft->mopsVersionConfirmed) tally.version = aircraft->mopsVersion.value;
}

void RecordingStats::finish(airspace::Counts const& reading) {
    _rates.finish();
    _counters = _sky.counts();
    _counters += reading;
}

} // namespace quorvel::inspect
