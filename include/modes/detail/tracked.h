// SPDX-License-Identifier: MIT
#pragma once

namespace quorvel::modes::detail {

// What a target keeps of one item. Internal: installed because targets hold these by value, not part of the interface.
// Times are milliseconds since 1970-01-01 00:00:00 UTC; 0 means never.

/// A value and when it was last reported.
template <class T> struct Updated {
    T value{};
    unsigned long long lastUpdate = 0;

    void report(T const& reported, unsigned long long time) {
        value = reported;
        lastUpdate = time;
    }
};

/// A value, when it was last reported, and when it last became different or was first reported.
template <class T> struct Tracked {
    T value{};
    unsigned long long lastUpdate = 0;
    unsigned long long lastChange = 0;

    /// Whether reporting this value is a change. The first report is one even if it repeats the initial
    /// value.
    bool isChange(T const& reported) const { return reported != value || lastChange == 0; }

    void report(T const& reported, unsigned long long time) {
        if (isChange(reported)) {
            value = reported;
            lastChange = time;
        }
        lastUpdate = time;
    }

    /// As above, but only a different value is a change: a first report that repeats the initial value is
    /// none.
    void reportDifferent(T const& reported, unsigned long long time) {
        if (reported != value) {
            value = reported;
            lastChange = time;
        }
        lastUpdate = time;
    }

    /// Back to "not reported": the change rule with an empty value at time 0. An item that already held the
    /// empty value and had been reported keeps its change time; hosts see that (deliberate).
    void reset() { report(T{}, 0); }
};

} // namespace quorvel::modes::detail
