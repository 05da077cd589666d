#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# reproducible.sh: builds the revision that is checked out twice, in folders, languages and time zones that differ, and
# expects the same library, with debug information.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# library FOLDER: builds the revision in a folder and prints the name of the library
library() {
    git clone --quiet "$root" "$work/$1"
    cd "$work/$1"
    {
        CCACHE_DISABLE=1 cmake --preset release -DCMAKE_CXX_FLAGS=-g -DTREVALLO_APPS=OFF
        CCACHE_DISABLE=1 cmake --build --preset release -j "$(nproc)"
    } >"$work/log" 2>&1 || { cat "$work/log" >&2; return 1; }
    realpath build/release/src/libtrevallo.so
}

one=$(LC_ALL=C TZ=UTC library one)
other=$(umask 077; LC_ALL=C.UTF-8 TZ=Pacific/Auckland library another/folder/with/a/longer/name)
sha256sum "$one" "$other" | sed "s|$work/||"
cmp "$one" "$other"
! grep -qF "$work" "$one" || { echo "the library names the folder that it was built in" >&2; exit 1; }
