// SPDX-License-Identifier: MIT
#pragma once

#include "files/byte_source.h"
#include "inspect/csv_frames.h"
#include "inspect/frame_seconds.h"
#include "terminal/progress.h"
#include <airspace/stream.h>

#include <cstdint>
#include <optional>
#include <string>

namespace quorvel::inspect {

/// Reads a recording whose frames matter by how far they are apart, not by their date: of any encoding, or of lines
/// "SECONDS,HEX", which it recognizes by its beginning unless an encoding is given.
class RecordingReader {
public:
    /// Opens it. Throws HostError when it cannot be opened.
    RecordingReader(std::string const& name, std::optional<airspace::Encoding> encoding);

    /// The next frames, at least one, in the order of the recording; empty at the end, and after a signal to stop. Throws
    /// HostError when reading fails or the encoding is not recognized.
    airspace::Frames read();

    std::string const& name() const { return _source.name(); }

    /// Whether its frames have times, once there are frames; and whether those count from when a receiver was switched on.
    bool isTimed() const;
    bool isCounter() const { return _stream.timeReading() == airspace::TimeReading::Counter12MHz; }

    /// Lines that are not frames.
    std::uint64_t badLines() const;

private:
    void readPiece(airspace::Frames& frames);
    void pass(std::string_view bytes, airspace::Frames& frames);
    void finish(airspace::Frames& frames);
    void requireKnown(bool isKnown) const;
    void complain(std::string const& what) const;

    files::ByteSource _source;
    airspace::Stream _stream;
    CsvFrames _csv;
    std::optional<bool> _isCsv; // none while that is not known
    std::string _beginning;     // what came until then
    terminal::Progress _progress;
    std::uint64_t _frames = 0;
    bool _hasEnded = false;
};

} // namespace quorvel::inspect
