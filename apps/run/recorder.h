// SPDX-License-Identifier: MIT
#pragma once

#include "host/compressor.h"
#include "host/output.h"

#include <cstdio>
#include <memory>
#include <string>

namespace quorvel::host {

/// Records frames as they were received, with their times, so that they can be played back: a Beast stream
/// whose time stamps are times of the UTC day. Files whose names end in ".zst" or ".gz" are compressed.
///
/// A file that is there is gone on with. What is recorded is in the file after ten seconds of it, so that
/// little is lost when the power fails.
class Recorder : public Output {
public:
    /// With `rotates`, there is a file for each hour of the present, its date and hour before the ending:
    /// "sky-2024-05-01T12.beast.zst". Throws HostError when the file cannot be written.
    Recorder(std::string file, bool rotates);
    ~Recorder() override;
    Recorder(Recorder const&) = delete;
    Recorder& operator=(Recorder const&) = delete;

    Wants wants() const override { return Wants::EachFrame; }
    bool wantsPicture() override { return false; }
    void heard(HeardFrame const& heard) override;
    void finish(Picture const&) override;

private:
    bool isInHour(TimeMs now) const; // of the file
    void open(TimeMs hour);
    void close();
    void hand(); // what was collected to the file

    std::string _name;
    bool _rotates;
    std::string _file; // being written
    std::FILE* _out = nullptr;
    TimeMs _hour = 0; // of the file
    TimeMs _handed = 0;
    std::string _plain;
};

/// The name of the file for an hour.
std::string nameForHour(std::string const& name, TimeMs time);

} // namespace quorvel::host
