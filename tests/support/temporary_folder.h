// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace quorvel::modes::test {

/// A folder for one test alone, removed with its content at the end.
class TemporaryFolder {
public:
    TemporaryFolder() {
        static std::atomic<unsigned> count{0};
        auto const now = std::chrono::steady_clock::now().time_since_epoch().count();
        auto const name = "trevallo_test_" + std::to_string(now) + "_" + std::to_string(++count);
        _folder = std::filesystem::temp_directory_path() / name;
        std::filesystem::create_directories(_folder);
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(_folder, ignored);
    }
    TemporaryFolder(TemporaryFolder const&) = delete;
    TemporaryFolder& operator=(TemporaryFolder const&) = delete;

    std::string path(std::string const& name) const { return (_folder / name).string(); }

    /// Writes a file and returns its path.
    std::string write(std::string const& name, std::string const& content) const {
        std::ofstream(path(name), std::ios::binary) << content;
        return path(name);
    }

private:
    std::filesystem::path _folder;
};

/// What a file holds; nothing when there is none.
inline std::string content(std::string const& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

} // namespace quorvel::modes::test
