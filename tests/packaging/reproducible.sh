#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# reproducible.sh: builds the revision that is checked out twice, in folders, languages and time zones that differ, and
# expects the same libraries, with debug information.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

libraries=(src/libtrevallo.so src/airspace/libtrevallo-airspace.so)

# build FOLDER: builds the revision in a folder and prints where the libraries lie
build() {
    git clone --quiet "$root" "$work/$1"
    cd "$work/$1"
    {
        CCACHE_DISABLE=1 cmake --preset release -DCMAKE_CXX_FLAGS=-g -DTREVALLO_APPS=OFF
        CCACHE_DISABLE=1 cmake --build --preset release -j "$(nproc)"
    } >"$work/log" 2>&1 || { cat "$work/log" >&2; return 1; }
    realpath build/release
}

one=$(LC_ALL=C TZ=UTC build one)
other=$(umask 077; LC_ALL=C.UTF-8 TZ=Pacific/Auckland build another/folder/with/a/longer/name)
for library in "${libraries[@]}"; do
    sha256sum "$one/$library" "$other/$library" | sed "s|$work/||"
    cmp "$one/$library" "$other/$library"
    ! grep -qF "$work" "$one/$library" || { echo "$library names the folder that it was built in" >&2; exit 1; }
done
