// SPDX-License-Identifier: MIT
#pragma once

#include "host/output.h"

#include <string>

namespace quorvel::host {

/// All counts as one JSON object in a file, of the run and of each source, replaced as a whole with each
/// picture.
class StatsJson : public Output {
public:
    explicit StatsJson(std::string file);

    void picture(Picture const& picture) override;

private:
    std::string _file;
};

/// The object, in one line. Counts have the names that they have for Prometheus; those of a group are an
/// object by label.
std::string statsJson(Picture const& picture);

} // namespace quorvel::host
