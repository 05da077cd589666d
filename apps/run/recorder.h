// SPDX-License-Identifier: MIT
#pragma once

#include "files/compressor.h"
#include "outputs/output.h"

#include <cstdio>
#include <memory>
#include <string>

namespace quorvel::run {

/// Records frames as they were received, with their times, so that they can be played back: a Beast stream whose time
/// stamps are times of the UTC day. Files whose names end in ".zst" or ".gz" are compressed. An existing file is
/// appended to. What is recorded reaches the file within ten seconds, so that little is lost when the power fails.
class Recorder : public outputs::Output {
public:
    /// With `rotates`, there is a file for each hour of the present, its date and hour before the ending:
    /// "sky-2024-05-01T12.beast.zst". Throws HostError when the file cannot be written.
    Recorder(std::string file, bool rotates);
    ~Recorder() override;
    Recorder(Recorder const&) = delete;
    Recorder& operator=(Recorder const&) = delete;

    Wants wants() const override { return Wants::EachFrame; }
    bool wantsPicture() override { return false; }
    void heard(outputs::HeardFrame const& heard) override;
    void finish(outputs::Picture const&) override;

private:
    bool isInHour(airspace::TimeMs now) const; // of the file
    void open(airspace::TimeMs hour);
    void close();
    void writeCollected();

    std::string _name;
    bool _rotates;
    std::string _file; // being written
    std::FILE* _out = nullptr;
    airspace::TimeMs _hour = 0; // of the file
    airspace::TimeMs _writtenAt = 0;
    std::string _plain;
};

/// The name of the file for an hour.
std::string nameForHour(std::string const& name, airspace::TimeMs time);

} // namespace quorvel::run
