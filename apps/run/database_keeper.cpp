// SPDX-License-Identifier: MIT
#include "run/database_keeper.h"

namespace quorvel::run {

DatabaseKeeper::DatabaseKeeper(std::string const& path, Failures& failures, Clock::time_point now)
    : _file(path), _failures(failures), _savedAt(now) {
    _failures.attempt([&] { _file.requireSavable(); });
}

void DatabaseKeeper::saveWhenDue(Clock::time_point now) {
    if (now - _savedAt < kInterval) return;
    _savedAt = now;
    save();
}

void DatabaseKeeper::save() {
    _failures.attempt([&] { _file.save(); });
}

} // namespace quorvel::run
