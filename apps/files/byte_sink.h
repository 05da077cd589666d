// SPDX-License-Identifier: MIT
#pragma once

#include "files/compressor.h"
#include "files/replaced_file.h"

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace quorvel::files {

/// A file that is written piece by piece, so that its size does not matter, or standard output. Files whose
/// names end in ".gz" or ".zst" are compressed.
///
/// An ordinary file takes the place of the old one when it is finished, and not before: it may be made from the old
/// one, and a failure leaves no partial file. Devices and pipes are written as they are.
class ByteSink {
public:
    /// "-" is standard output. Makes the folder of a file. Throws HostError when it cannot be written.
    explicit ByteSink(std::string const& name);
    ~ByteSink();
    ByteSink(ByteSink const&) = delete;
    ByteSink& operator=(ByteSink const&) = delete;

    /// Throws HostError when writing fails, on a full disk for example.
    void write(std::string_view bytes);

    /// Writes what is left and puts the file in its place. Throws as above.
    void finish();

private:
    void put(std::string_view bytes);

    std::string _name;
    std::unique_ptr<ReplacedFile> _replaced; // none for standard output
    std::FILE* _file;
    std::unique_ptr<Compressor> _compressor;
    std::string _packed;
};

} // namespace quorvel::files
