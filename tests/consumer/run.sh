#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# run.sh BUILD_FOLDER: installs a built tree, moves the installation, and uses it from a project of its own: through
# CMake and through pkg-config, shared; then the same for a static build.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
build=$(cd "$1" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# install FOLDER NAME: an installation that was moved after it was made
install() {
    cmake --install "$1" --prefix "$work/$2.made" >/dev/null
    mv "$work/$2.made" "$work/$2"
}

# use NAME: builds and runs the consumer against an installation, both ways
use() {
    local prefix=$work/$1 libraries
    libraries=$(dirname "$(find "$prefix" -name 'libtrevallo.*' | head -n 1)")

    cmake -S "$root/tests/consumer" -B "$work/$1-cmake" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
    cmake --build "$work/$1-cmake" >/dev/null
    echo "$1 through CMake: $("$work/$1-cmake/consumer")"

    export PKG_CONFIG_PATH=$libraries/pkgconfig
    # shellcheck disable=SC2046
    c++ -std=c++17 "$root/tests/consumer/consumer.cpp" -o "$work/$1-pkgconfig" $(pkg-config --cflags --libs trevallo)
    echo "$1 through pkg-config: $(LD_LIBRARY_PATH=$libraries "$work/$1-pkgconfig")"
}

install "$build" shared
use shared
test -L "$(find "$work/shared" -name libtrevallo.so)"
test -f "$(find "$work/shared" -name libtrevallo.so.1.0.2)"
readelf -d "$(find "$work/shared" -name libtrevallo.so.1.0.2)" | grep -q 'soname: \[libtrevallo.so.1\]'
echo "program: $("$work/shared/bin/trevallo" --version | head -n 1)"

cmake -S "$root" -B "$work/static-build" -DBUILD_SHARED_LIBS=OFF -DTREVALLO_TESTS=OFF -DTREVALLO_APPS=OFF \
    -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build "$work/static-build" -j "$(nproc)" >/dev/null
install "$work/static-build" static
use static
