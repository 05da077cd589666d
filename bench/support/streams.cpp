// SPDX-License-Identifier: MIT
#include "support/streams.h"

#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>

namespace quorvel::modes::bench {

namespace {

std::string readFile(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw std::runtime_error("cannot read " + path);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

std::string const& stream(std::string const& name) {
    static std::map<std::string, std::string> streams;
    auto const [known, isNew] = streams.try_emplace(name);
    if (isNew) known->second = readFile(TREVALLO_BENCH_STREAMS "/" + name);
    return known->second;
}

} // namespace quorvel::modes::bench
