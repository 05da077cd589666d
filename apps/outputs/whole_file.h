// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace quorvel::host {

/// Writes a file that others may be reading: they find the old content or the new, never a part. What is no
/// ordinary file (a device, a pipe) is written as it is. Throws HostError.
void writeWhole(std::string const& path, std::string const& content);

/// Makes a folder, and those that it is in, unless it is there. Throws HostError.
void makeFolder(std::string const& path);

} // namespace quorvel::host
