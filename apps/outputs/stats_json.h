// SPDX-License-Identifier: MIT
#pragma once

#include "outputs/output.h"

#include <memory>
#include <string>

namespace quorvel::outputs {

/// All counts as one JSON object in a file, of the run and of each source, replaced as a whole with each
/// picture.
class StatsJson : public Output {
public:
    explicit StatsJson(std::string file);

    void picture(Picture const& picture) override;

private:
    std::string _file;
};

/// The same, a line for each picture.
class StatsLines : public Output {
public:
    explicit StatsLines(std::unique_ptr<Sink> sink);

    void picture(Picture const& picture) override;

private:
    std::unique_ptr<Sink> _sink;
};

/// The object, in one line. Counts have the names that they have for Prometheus; those of a group are an
/// object by label.
std::string statsJson(Picture const& picture);

} // namespace quorvel::outputs
