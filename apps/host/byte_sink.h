// SPDX-License-Identifier: MIT
#pragma once

#include "host/compressor.h"

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace quorvel::host {

/// A file that is written piece by piece, so that its size does not matter, or standard output. Files whose
/// names end in ".gz" or ".zst" are compressed.
///
/// An ordinary file takes the place of the old one when it is finished, and not before: it may be made of the
/// old one, and what fails leaves no half of a file. Devices and pipes are written as they are.
class ByteSink {
public:
    /// "-" is standard output. Throws HostError when it cannot be written.
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
    std::string _place;   // where the file belongs; empty when it is written there directly
    std::string _written; // where it is written
    std::FILE* _file;
    std::unique_ptr<Compressor> _compressor;
    std::string _packed;
};

} // namespace quorvel::host
