// SPDX-License-Identifier: MIT
#include "run/recorder.h"

#include <modes/adsb_target_report.h>

#include "files/host_error.h"
#include "files/replaced_file.h"
#include <airspace/encoding.h>

#include <utility>

namespace quorvel::run {

namespace {

constexpr airspace::TimeMs kHour = 3'600'000;
constexpr airspace::TimeMs kBehind = 60'000;
constexpr airspace::TimeMs kWriteInterval = 10'000;
constexpr std::size_t kMostCollected = 1024 * 1024;
constexpr std::size_t kHourCharacters = 13; // 2024-05-01T12

} // namespace

std::string nameForHour(std::string const& name, airspace::TimeMs time) {
    auto const folder = name.rfind('/') == std::string::npos ? 0 : name.rfind('/') + 1;
    auto const ending = std::min(name.find('.', folder + 1), name.size());
    auto const hour = modes::ADSBTargetReport::timeToString(time == 0 ? 1 : time).substr(0, kHourCharacters);
    return name.substr(0, ending) + "-" + hour + name.substr(ending);
}

Recorder::Recorder(std::string file, bool rotates) : _name(std::move(file)), _rotates(rotates) {
    if (!_rotates) open(0); // so that an unwritable file is reported before the first frame
}

Recorder::~Recorder() {
    if (_out != nullptr) std::fclose(_out);
}

void Recorder::heard(outputs::HeardFrame const& heard) {
    auto const now = heard.frame.now;
    if (_rotates && (_out == nullptr || !isInHour(now))) {
        close();
        open(now / kHour);
    }
    auto frame = heard.frame;
    frame.stamp = airspace::timeOfDayStamp(frame.time);
    airspace::appendEncoded(_plain, frame, airspace::Encoding::Beast);
    if (_plain.size() > kMostCollected || now > _writtenAt + kWriteInterval || now + kHour < _writtenAt) {
        _writtenAt = now;
        writeCollected();
    }
}

// A source whose clock is a little behind the others' does not reopen the file before.
bool Recorder::isInHour(airspace::TimeMs now) const {
    return now + kBehind >= _hour * kHour && now < (_hour + 1) * kHour;
}

void Recorder::open(airspace::TimeMs hour) {
    _hour = hour;
    _file = _rotates ? nameForHour(_name, hour * kHour) : _name;
    files::makeFolderOf(_file, "write the recording");
    _out = std::fopen(_file.c_str(), "ab");
    if (_out == nullptr) throw files::systemError("write the recording", _file);
}

// Each piece is compressed as a whole: a truncated file is readable up to there.
void Recorder::writeCollected() {
    if (_plain.empty()) return;
    std::string packed;
    if (auto const compressor = files::Compressor::forFile(_file)) {
        compressor->pack(_plain, packed);
        compressor->finish(packed);
    } else {
        packed.swap(_plain);
    }
    _plain.clear();
    bool const isWritten =
        std::fwrite(packed.data(), 1, packed.size(), _out) == packed.size() && std::fflush(_out) == 0;
    if (!isWritten) throw files::systemError("write the recording", _file);
}

void Recorder::close() {
    if (_out == nullptr) return;
    writeCollected();
    auto* const out = std::exchange(_out, nullptr);
    if (std::fclose(out) != 0) throw files::systemError("write the recording", _file);
}

void Recorder::finish(outputs::Picture const&) { close(); }

} // namespace quorvel::run
