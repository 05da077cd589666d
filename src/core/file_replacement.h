// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>

namespace quorvel::modes {

/// Replaces a file as a whole or not at all: the new content is written beside the old one, flushed to the
/// disk and renamed over it, so that whoever opens the file, and whatever happens in between, finds the old
/// or the new one. No library exports it; the program is made of it as well.
///
/// Where that cannot be done the file is written directly: a device or a pipe takes no rename, and a file
/// that may not be written must not be replaced by one that can. A symbolic link stays, the file that it
/// leads to is replaced.
class FileReplacement {
public:
    explicit FileReplacement(std::string const& path);

    /// Removes the new content unless it has taken the place of the old.
    ~FileReplacement();
    FileReplacement(FileReplacement const&) = delete;
    FileReplacement& operator=(FileReplacement const&) = delete;

    /// Where to write the new content.
    std::string const& path() const { return _written; }

    /// Puts what was written in place of the old file, with its permissions and, where that is allowed, its
    /// owner. Throws std::ios_base::failure with the code of the system.
    void commit();

    /// The same without waiting for the disk: after a power failure the file may be empty. For content that is
    /// soon replaced anyway.
    void commitUnflushed();

private:
    bool isDirect() const { return _written == _replaced; }

    std::string _replaced;
    std::string _written;
    bool _committed = false;
};

} // namespace quorvel::modes
