#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# run.sh BUILD_FOLDER: uses the library from projects of somebody else's in every way that there is: installed (shared
# and static, moved after it was installed) through CMake and through pkg-config, and as sources, in a folder of the
# project and fetched.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
build=$(cd "$1" && pwd)
version=$(sed -nE 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() { echo "consumer: $1" >&2; exit 1; }

# quietly COMMAND...: shows what it says only if it fails
quietly() { "$@" >"$work/log" 2>&1 || { cat "$work/log" >&2; fail "$*"; }; }

# install FOLDER NAME: an installation that was moved after it was made
install() {
    quietly cmake --install "$1" --prefix "$work/$2.made"
    mv "$work/$2.made" "$work/$2"
}

# project NAME WAY OPTION...: builds one of the projects beside this script
project() {
    quietly cmake -S "$root/tests/consumer/$2" -B "$work/$1" -G Ninja "${@:3}"
    quietly cmake --build "$work/$1" -j "$(nproc)"
}

# answers NAME COMMAND...: the consumer runs and tells the version
answers() {
    [[ $("${@:2}") == "$version" ]] || fail "$1: does not answer $version"
    echo "$1: $version"
}

# use NAME: builds and runs the consumer against an installation, through CMake and through pkg-config
use() {
    local prefix=$work/$1 libraries
    libraries=$(dirname "$(find "$prefix" -name 'libtrevallo.*' | head -n 1)")

    project "$1-cmake" installed -DCMAKE_PREFIX_PATH="$prefix"
    answers "$1 through CMake" "$work/$1-cmake/consumer"

    export PKG_CONFIG_PATH=$libraries/pkgconfig
    [[ $(pkg-config --modversion trevallo) == "$version" ]] || fail "$1: pkg-config knows another version"
    # shellcheck disable=SC2046
    quietly c++ -std=c++17 "$root/tests/consumer/consumer.cpp" -o "$work/$1-pkgconfig" \
        $(pkg-config --cflags --libs trevallo)
    answers "$1 through pkg-config" env LD_LIBRARY_PATH="$libraries" "$work/$1-pkgconfig"
}

# installs_itself_only NAME: the library adds nothing to what the project installs
installs_itself_only() {
    quietly cmake --install "$work/$1" --prefix "$work/$1-installed"
    [[ $(cd "$work/$1-installed" && find . -type f) == ./bin/consumer ]] ||
        fail "$1: more is installed than the project's own"
}

# is_shared and is_static PROGRAM: how it has been linked with the library
is_shared() { readelf -d "$1" | grep -q 'NEEDED.*\[libtrevallo\.so\.1\]' || fail "$1 is not linked with the shared library"; }
is_static() { ! readelf -d "$1" | grep -q 'NEEDED.*libtrevallo' || fail "$1 needs the shared library"; }

install "$build" shared
use shared
is_shared "$work/shared-cmake/consumer"
library=$(find "$work/shared" -name libtrevallo.so)
[[ $(readlink "$library") == libtrevallo.so.1 && $(readlink "$library.1") == "libtrevallo.so.$version" ]] ||
    fail "the names of the shared library are not linked as they should be"

project program program -DCMAKE_PREFIX_PATH="$work/shared"
[[ -s $work/program/traffic.avr ]] || fail "the program that find_package names has made no traffic"
echo "program: $("$work/shared/bin/trevallo" --version | head -n 1)"
for file in man/man1/trevallo.1 bash-completion/completions/trevallo zsh/site-functions/_trevallo doc/trevallo/LICENSE; do
    [[ -s $work/shared/share/$file ]] || fail "share/$file is not installed"
done

# each component alone: who wants the library only gets no program, and the other way round
cmake --install "$build" --component Runtime --prefix "$work/runtime" >/dev/null
[[ -z $(find "$work/runtime" -name include -o -name bin -o -name '*.so') ]] || fail "Runtime installs too much"
cmake --install "$build" --component Development --prefix "$work/runtime" >/dev/null
[[ ! -e $work/runtime/bin ]] || fail "Development installs the program"
project library-alone installed -DCMAKE_PREFIX_PATH="$work/runtime"
! cmake -S "$root/tests/consumer/program" -B "$work/no-program" -DCMAKE_PREFIX_PATH="$work/runtime" &>/dev/null ||
    fail "the program was found where it is not installed"

quietly cmake -S "$root" -B "$work/static-build" -G Ninja -DBUILD_SHARED_LIBS=OFF -DTREVALLO_TESTS=OFF -DTREVALLO_APPS=OFF
quietly cmake --build "$work/static-build" -j "$(nproc)"
install "$work/static-build" static
use static
is_static "$work/static-cmake/consumer"

project subdirectory subdirectory -DTREVALLO_SOURCE="$root" -DBUILD_SHARED_LIBS=ON
answers "add_subdirectory" "$work/subdirectory/consumer"
is_shared "$work/subdirectory/consumer"
installs_itself_only subdirectory

(cd "$root" && git ls-files --cached --others --exclude-standard -z | tar -czf "$work/trevallo.tar.gz" --null -T -)
project fetched fetched -DTREVALLO_ARCHIVE="$work/trevallo.tar.gz"
answers "FetchContent" "$work/fetched/consumer"
is_static "$work/fetched/consumer"
installs_itself_only fetched
