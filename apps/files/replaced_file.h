// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

namespace quorvel::modes {
class FileReplacement;
}

namespace quorvel::files {

/// A file that is replaced as a whole or not at all: the new content is written beside the old, flushed to the disk
/// and renamed over it, so that others who read it find the old content or the new, never a part.
///
/// Anything but an ordinary file (a device, a pipe), and a file that may not be written, is written directly. A
/// symbolic link stays, the file that it leads to is replaced, and keeps its permissions.
class ReplacedFile {
public:
    explicit ReplacedFile(std::string name);

    /// Removes the new content unless it has taken the place of the old.
    ~ReplacedFile();
    ReplacedFile(ReplacedFile const&) = delete;
    ReplacedFile& operator=(ReplacedFile const&) = delete;

    /// Where to write the new content: a hidden file of its own, so that two writers of one file do not disturb each
    /// other.
    std::string const& path() const;

    /// Puts what was written in place of the old file. Throws HostError.
    void commit();

    /// The same without waiting for the disk: after a power failure the file may be empty. For content that is soon
    /// replaced anyway.
    void commitUnflushed();

private:
    std::string _name; // as the user knows it
    std::unique_ptr<modes::FileReplacement> _replacement;
};

/// Replaces a file by this content. Throws HostError.
void writeWhole(std::string const& path, std::string const& content);

/// The same for content that is replaced again and again, each second perhaps. It is not flushed to the disk: waiting
/// for a memory card would hold up the loop and wear out the card, and what was lost in a power failure is soon written
/// again.
void writeMomentary(std::string const& path, std::string const& content);

/// Creates a folder, and those that it is in, unless it exists. Throws HostError.
void makeFolder(std::string const& path);

/// Creates the folder of a file, and those around it, unless they exist. Throws a HostError that says what cannot be
/// done with the file.
void makeFolderOf(std::string const& file, std::string const& what = "write");

} // namespace quorvel::files
