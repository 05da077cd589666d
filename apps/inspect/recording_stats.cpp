// SPDX-License-Identifier: MIT
#include "inspect/recording_stats.h"

#include "inspect/dissection.h"
#include "inspect/frame_text.h"

namespace quorvel::host {

namespace {

constexpr TimeMs kSilence = 300'000; // ms
constexpr TimeMs kDropInterval = 1'000;
constexpr unsigned kTypeCodeBits = 5;

ReceiverOptions optionsFor(bool isTimed) {
    ReceiverOptions options;
    options.positions.checksSpeed = isTimed;
    return options;
}

} // namespace

RecordingStats::RecordingStats(bool isTimed) : _isTimed(isTimed), _receiver(optionsFor(isTimed), nullptr) {
    if (isTimed) _receiver.setTimeout(kSilence);
}

void RecordingStats::take(Frame const& frame) {
    auto const time = frame.record->timeStamp();
    if (_isTimed) _rates.take(time);
    if (frame.signal != 0) ++_signals[frame.signal * kSignalBands / 256];
    auto const result = _receiver.take(frame);
    auto const bytes = frame.record->data();
    if (bytes.size() != kModeAcFrameBytes) countParity(bytes, result.message.get());
    if (result.message) countPayload(*result.message);
    if (result.target) countAircraft(*result.target);
    if (time < _lastDrop + kDropInterval) return;
    _lastDrop = time;
    _receiver.dropSilentTargets(time);
}

void RecordingStats::countParity(std::string const& bytes, modes::ModeSMessage const* message) {
    switch (overlayOf(bytes)) {
    case Overlay::Nothing:
        ++(!message ? _parity.wrong : message->data() == bytes ? _parity.right : _parity.repaired);
        return;
    case Overlay::Interrogator: {
        bool const isRight = message && isInterrogator(message->calculatedParity() ^
                                                       static_cast<unsigned>(bitsOf(bytes, 32, 24)));
        ++(isRight ? _parity.right : _parity.wrong);
        return;
    }
    case Overlay::Address: ++_parity.overlaid; return;
    case Overlay::Unknown: ++_parity.unknown; return;
    }
}

void RecordingStats::countPayload(modes::ModeSMessage const& message) {
    if (hasADSBPayload(message.data()))
        ++_typeCodes[bitsOf(message.data(), kPayloadFirstBit - 1, kTypeCodeBits)];
}

void RecordingStats::countAircraft(modes::ADSBTarget const& target) {
    auto& tally = _aircraft[target.icaoAddr()];
    ++tally.replies;
    if (target.callsignValid() && tally.callsign != target.callsign()) tally.callsign = target.callsign();
    if (target.mopsVersionConfirmed()) tally.version = target.mopsVersion();
}

void RecordingStats::finish(Counters const& reading) {
    _rates.finish();
    _counters = _receiver.counters();
    _counters += reading;
}

} // namespace quorvel::host
