// SPDX-License-Identifier: MIT
#include "run/recorder.h"

#include <modes/adsb_target_report.h>

#include "host/frame_writer.h"
#include "host/host_error.h"

#include <utility>

namespace quorvel::host {

namespace {

constexpr TimeMs kHour = 3'600'000;
constexpr TimeMs kDay = 24 * kHour;
constexpr TimeMs kBehind = 60'000;
constexpr TimeMs kHandInterval = 10'000;
constexpr std::size_t kMostCollected = 1024 * 1024;
constexpr std::size_t kHourCharacters = 13; // 2024-05-01T12

// 18 bits second of the UTC day, 30 bits nanosecond.
std::uint64_t timeOfDayStamp(TimeMs time) { return time % kDay / 1000 << 30 | time % 1000 * 1'000'000; }

} // namespace

std::string nameForHour(std::string const& name, TimeMs time) {
    auto const folder = name.rfind('/') == std::string::npos ? 0 : name.rfind('/') + 1;
    auto const ending = std::min(name.find('.', folder + 1), name.size());
    auto const hour = modes::ADSBTargetReport::timeToString(time == 0 ? 1 : time).substr(0, kHourCharacters);
    return name.substr(0, ending) + "-" + hour + name.substr(ending);
}

Recorder::Recorder(std::string file, bool rotates) : _name(std::move(file)), _rotates(rotates) {
    if (!_rotates) open(0); // that it cannot be written is known before the first frame
}

Recorder::~Recorder() {
    if (_out != nullptr) std::fclose(_out);
}

void Recorder::heard(HeardFrame const& heard) {
    auto const now = heard.frame.now;
    if (_rotates && (_out == nullptr || !isInHour(now))) {
        close();
        open(now / kHour);
    }
    auto const stamp = timeOfDayStamp(heard.frame.record->timeStamp());
    appendEncoded(_plain, {heard.frame.record, stamp, heard.frame.signal}, Encoding::Beast);
    if (_plain.size() > kMostCollected || now > _handed + kHandInterval || now + kHour < _handed) {
        _handed = now;
        hand();
    }
}

// A source whose clock is a little behind the others' opens no file anew.
bool Recorder::isInHour(TimeMs now) const {
    return now + kBehind >= _hour * kHour && now < (_hour + 1) * kHour;
}

void Recorder::open(TimeMs hour) {
    _hour = hour;
    _file = _rotates ? nameForHour(_name, hour * kHour) : _name;
    _out = std::fopen(_file.c_str(), "ab");
    if (_out == nullptr) throw systemError("write the recording", _file);
}

// Each piece is compressed as a whole: a file that was cut short is readable up to there.
void Recorder::hand() {
    if (_plain.empty()) return;
    std::string packed;
    if (auto const compressor = Compressor::forFile(_file)) {
        compressor->pack(_plain, packed);
        compressor->finish(packed);
    } else {
        packed.swap(_plain);
    }
    _plain.clear();
    bool const isWritten =
        std::fwrite(packed.data(), 1, packed.size(), _out) == packed.size() && std::fflush(_out) == 0;
    if (!isWritten) throw systemError("write the recording", _file);
}

void Recorder::close() {
    if (_out == nullptr) return;
    hand();
    auto* const out = std::exchange(_out, nullptr);
    if (std::fclose(out) != 0) throw systemError("write the recording", _file);
}

void Recorder::finish(Picture const&) { close(); }

} // namespace quorvel::host
