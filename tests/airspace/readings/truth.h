// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace quorvel::airspace::test {

using Json = nlohmann::json;

/// What recorded frames and single cases say by the standards; empty where there is none, and tests are skipped then.
inline std::vector<std::filesystem::path> truthFiles(std::string_view ending) {
    std::vector<std::filesystem::path> files;
    std::error_code none;
    for (auto const& file : std::filesystem::directory_iterator(TREVALLO_RECORDINGS "/standard", none)) {
        auto const name = file.path().filename().string();
        if (name.size() >= ending.size() && name.substr(name.size() - ending.size()) == ending) {
            files.push_back(file.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

/// Calls `take` with each line of a file, compressed or not.
template <class Take> void forEachLine(std::filesystem::path const& path, Take&& take) {
    auto* const file = gzopen(path.c_str(), "rb");
    ASSERT_NE(file, nullptr) << path;
    std::string line;
    std::array<char, 4096> part{};
    while (gzgets(file, part.data(), static_cast<int>(part.size())) != nullptr) {
        line += part.data();
        if (line.back() != '\n') continue;
        take(std::string_view(line).substr(0, line.size() - 1));
        line.clear();
    }
    if (!line.empty()) take(std::string_view(line));
    gzclose(file);
}

/// Whether a value is the one expected: texts and flags exactly, numbers within `tolerance`.
inline bool isAsExpected(Json const& value, Json const& expected, double tolerance = 1e-6) {
    if (!value.is_number() || !expected.is_number()) return value == expected;
    return std::abs(value.get<double>() - expected.get<double>()) <= tolerance;
}

} // namespace quorvel::airspace::test

/// In place of a test's first line.
#define SKIP_WITHOUT(files)                                                                                            \
    if ((files).empty()) GTEST_SKIP() << "there is no truth in " << TREVALLO_RECORDINGS << "/standard"
