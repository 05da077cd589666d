// SPDX-License-Identifier: MIT
#include "vectors/vector_file.h"

#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace quorvel::modes::test {

std::vector<Vector> readVectors(std::string const& fileName) {
    std::ifstream file(TREVALLO_VECTORS "/" + fileName);
    if (!file) throw std::runtime_error("cannot read " + fileName);
    std::vector<Vector> vectors;
    std::string name;
    int number = 0;
    for (std::string line; std::getline(file, line);) {
        ++number;
        if (line.empty()) continue;
        if (line[0] == '#') {
            name = line.substr(2);
        } else if (line[0] == ' ') {
            vectors.back().expected.push_back(line.substr(2));
        } else {
            std::istringstream words(line);
            Vector vector{number, name, {}, {}};
            for (std::string word; words >> word;) vector.input.push_back(word);
            vectors.push_back(vector);
        }
    }
    return vectors;
}

std::string escaped(std::string const& text) {
    std::string result;
    for (char const character : text) {
        if (' ' <= character && character <= '~') {
            result += character;
        } else {
            char code[5] = "";
            std::snprintf(code, sizeof code, "\\x%02X", static_cast<unsigned>(static_cast<unsigned char>(character)));
            result += code;
        }
    }
    return result;
}

} // namespace quorvel::modes::test
