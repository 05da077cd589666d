// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace quorvel::modes::test {

/// An input of a vector file and what is expected of it; the form of the files is described in
/// make_vectors.py.
struct Vector {
    int line;                          ///< where it stands in the file
    std::string name;                  ///< the comment above it
    std::vector<std::string> input;    ///< the words of its first line
    std::vector<std::string> expected; ///< the lines below, without their indentation
};

/// All vectors of a file that make_vectors.py has made. Throws when it cannot be read.
std::vector<Vector> readVectors(std::string const& fileName);

/// Text with everything but printable characters as \xNN.
std::string escaped(std::string const& text);

} // namespace quorvel::modes::test
