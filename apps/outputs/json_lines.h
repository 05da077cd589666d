// SPDX-License-Identifier: MIT
#pragma once

#include "outputs/output.h"

#include <map>
#include <utility>

namespace quorvel::outputs {

/// A stream of JSON objects, one a line: a snapshot of each aircraft that was heard since the picture before.
///
/// Keys are the names of the items, all values always and in the same order; null stands for a value that is not valid.
/// Each time comes as ISO 8601 text and, under its name with "Ms", in milliseconds. An item that was reported has its
/// source, its times and its age in seconds.
class JsonLines : public Output {
public:
    explicit JsonLines(std::unique_ptr<Sink> sink);

    void picture(Picture const& picture) override;

private:
    using Key = std::pair<std::string, std::string>;          // source and name of the aircraft
    using State = std::pair<airspace::TimeMs, std::uint64_t>; // last update and number of messages

    std::unique_ptr<Sink> _sink;
    std::map<Key, State> _written;
};

/// The snapshot of one aircraft as a line of JSON, line feed included.
std::string jsonLine(Picture const& picture, Aircraft const& aircraft);

} // namespace quorvel::outputs
