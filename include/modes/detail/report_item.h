// SPDX-License-Identifier: MIT
#pragma once

namespace quorvel::modes::detail {

/// What a report says about one item. Internal: installed because reports hold these by value, not part of the
/// interface. Times are milliseconds since 1970-01-01 00:00:00 UTC; 0 means never.
template <class T> struct ReportItem {
    T value{};
    bool valid = false;
    unsigned long long lastUpdate = 0;
    unsigned long long lastChange = 0;

    /// Stores a value that says by itself whether it is valid.
    void set(T const& newValue, bool isValid) {
        value = newValue;
        valid = isValid;
    }
};

} // namespace quorvel::modes::detail
