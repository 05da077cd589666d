// SPDX-License-Identifier: MIT
#include "host/replaced_file.h"

#include <string>
#include <system_error>
#include <unistd.h>

namespace quorvel::host {

namespace fs = std::filesystem;

bool isReplaceable(fs::path const& path) {
    std::error_code error;
    auto const type = fs::status(path, error).type();
    return type == fs::file_type::not_found || type == fs::file_type::regular;
}

fs::path followed(fs::path const& path) {
    std::error_code error;
    auto const target = fs::canonical(path, error);
    return error ? path : target;
}

fs::path beside(fs::path const& path) {
    return path.parent_path() / ("." + path.filename().string() + "." + std::to_string(::getpid()) + ".new");
}

} // namespace quorvel::host
