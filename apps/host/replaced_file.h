// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

namespace quorvel::host {

/// Whether a file can be written beside its place and put there when it is whole: an ordinary one, or one
/// that is not there yet. Devices and pipes are written as they are.
bool isReplaceable(std::filesystem::path const& path);

/// Where a path leads: a symbolic link stays, the file that it leads to is replaced.
std::filesystem::path followed(std::filesystem::path const& path);

/// The place beside it. Hidden, and of this process alone, so that two that write the same file do not write
/// into each other's.
std::filesystem::path beside(std::filesystem::path const& path);

} // namespace quorvel::host
