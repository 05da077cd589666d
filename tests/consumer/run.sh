#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# run.sh BUILD_FOLDER: uses the libraries from other projects in every possible way: installed (shared
# and static, moved after it was installed) through CMake and through pkg-config, and as sources, in a folder of the
# project and fetched.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
build=$(cd "$1" && pwd)
version=$(sed -nE 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt")
airspace_version=$(sed -nE 's/.*constexpr int kVersion.* = ([0-9]+);/\1/p' "$root/src/airspace/airspace_version.h" | paste -sd .)
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

# refused FOLDER WHY OPTION...: a project is not configured, and the reason is given
refused() {
    rm -rf "$work/refused"
    ! cmake -S "$1" -B "$work/refused" -G Ninja "${@:3}" >"$work/log" 2>&1 || fail "$1 is configured with ${*:3}"
    tr -s '[:space:]' ' ' <"$work/log" | grep -F -- "$2" >/dev/null || { cat "$work/log" >&2; fail "$1: not reported: $2"; }
}

# answers NAME COMMAND...: the consumer runs and prints the version
answers() {
    [[ $("${@:2}") == "$version" ]] || fail "$1: does not answer $version"
    echo "$1: $version"
}

# with_pkgconfig NAME SOURCE LIBRARY: builds a program with what pkg-config says of a library, and runs it
with_pkgconfig() {
    local way=()
    [[ $1 != static ]] || way=(--static)
    # shellcheck disable=SC2046
    quietly c++ -std=c++17 "$root/tests/consumer/$2.cpp" -o "$work/$1-pkgconfig-$2" \
        $(pkg-config --cflags --libs "${way[@]}" "$3")
    answers "$1 $3 through pkg-config" env LD_LIBRARY_PATH="$libraries" "$work/$1-pkgconfig-$2"
}

# use NAME: builds and runs the consumers against an installation, through CMake and through pkg-config
use() {
    local prefix=$work/$1 libraries
    libraries=$(dirname "$(find "$prefix" -name 'libtrevallo.*' | head -n 1)")

    project "$1-cmake" installed -DCMAKE_PREFIX_PATH="$prefix"
    answers "$1 trevallo through CMake" "$work/$1-cmake/consumer"
    project "$1-cmake-airspace" airspace -DCMAKE_PREFIX_PATH="$prefix"
    answers "$1 trevallo-airspace through CMake" "$work/$1-cmake-airspace/consumer_airspace"

    export PKG_CONFIG_PATH=$libraries/pkgconfig
    [[ $(pkg-config --modversion trevallo) == "$version" ]] || fail "$1: pkg-config knows another version"
    with_pkgconfig "$1" consumer trevallo
    with_pkgconfig "$1" consumer_airspace trevallo-airspace
    unset PKG_CONFIG_PATH
}

# installs_itself_only NAME: the library adds nothing to what the project installs
installs_itself_only() {
    quietly cmake --install "$work/$1" --prefix "$work/$1-installed"
    [[ $(cd "$work/$1-installed" && find . -type f) == ./bin/consumer ]] ||
        fail "$1: more is installed than the project's own"
}

# is_shared PROGRAM LIBRARY and is_static PROGRAM: how it has been linked
is_shared() { readelf -d "$1" | grep -q "NEEDED.*\[$2\.so\.1\]" || fail "$1 is not linked with the shared library"; }
is_static() { ! readelf -d "$1" | grep -q 'NEEDED.*libtrevallo' || fail "$1 needs the shared library"; }

install "$build" shared
use shared
is_shared "$work/shared-cmake/consumer" libtrevallo
is_shared "$work/shared-cmake-airspace/consumer_airspace" libtrevallo-airspace
for name in "libtrevallo.so $version" "libtrevallo-airspace.so $airspace_version"; do
    read -r name full <<<"$name"
    library=$(find "$work/shared" -name "$name")
    [[ $(readlink "$library") == "$name.1" && $(readlink "$library.1") == "$name.$full" ]] ||
        fail "the names of $name are not linked as they should be"
done

project program program -DCMAKE_PREFIX_PATH="$work/shared"
[[ -s $work/program/traffic.avr ]] || fail "the program that find_package names has made no traffic"
echo "program: $("$work/shared/bin/trevallo" --version | head -n 1)"
for file in man/man1/trevallo.1 bash-completion/completions/trevallo zsh/site-functions/_trevallo doc/trevallo/LICENSE \
    trevallo/conformance/conformance.jsonl trevallo/conformance/README.md; do
    [[ -s $work/shared/share/$file ]] || fail "share/$file is not installed"
done

# each component alone: the library brings no program, and the other way round
cmake --install "$build" --component Runtime --prefix "$work/runtime" >/dev/null
[[ -z $(find "$work/runtime" -name include -o -name bin -o -name '*.so') ]] || fail "Runtime installs too much"
cmake --install "$build" --component Development --prefix "$work/runtime" >/dev/null
[[ ! -e $work/runtime/bin ]] || fail "Development installs the program"
[[ -z $(find "$work/runtime" -name '*airspace*') ]] || fail "Development installs trevallo-airspace"
project library-alone installed -DCMAKE_PREFIX_PATH="$work/runtime"
for part in program airspace; do
    refused "$root/tests/consumer/$part" "The component $part is not installed" -DCMAKE_PREFIX_PATH="$work/runtime"
done
cmake --install "$build" --component AirspaceRuntime --prefix "$work/runtime" >/dev/null
[[ ! -e $work/runtime/share/trevallo ]] || fail "the conformance set is not AirspaceDevelopment's alone"
cmake --install "$build" --component AirspaceDevelopment --prefix "$work/runtime" >/dev/null
[[ -s $work/runtime/share/trevallo/conformance/conformance.jsonl ]] || fail "AirspaceDevelopment has no conformance set"
[[ ! -e $work/runtime/bin ]] || fail "AirspaceDevelopment installs the program"
project airspace-alone airspace -DCMAKE_PREFIX_PATH="$work/runtime"
answers "airspace without program" "$work/airspace-alone/consumer_airspace"

# without trevallo-airspace there is no program
refused "$root" TREVALLO_AIRSPACE=ON -DTREVALLO_TESTS=OFF -DTREVALLO_AIRSPACE=OFF
quietly cmake -S "$root" -B "$work/core-alone" -G Ninja -DTREVALLO_TESTS=OFF -DTREVALLO_AIRSPACE=OFF -DTREVALLO_APPS=OFF

quietly cmake -S "$root" -B "$work/static-build" -G Ninja -DBUILD_SHARED_LIBS=OFF -DTREVALLO_TESTS=OFF -DTREVALLO_APPS=OFF
quietly cmake --build "$work/static-build" -j "$(nproc)"
install "$work/static-build" static
use static
is_static "$work/static-cmake/consumer"
is_static "$work/static-cmake-airspace/consumer_airspace"
# the core needs neither zlib nor zstd
PKG_CONFIG_LIBDIR=$work project static-core installed -DCMAKE_PREFIX_PATH="$work/static"
PKG_CONFIG_LIBDIR=$work refused "$root/tests/consumer/airspace" "needs zlib and zstd" -DCMAKE_PREFIX_PATH="$work/static"

project subdirectory subdirectory -DTREVALLO_SOURCE="$root" -DBUILD_SHARED_LIBS=ON -DTREVALLO_AIRSPACE=ON
answers "add_subdirectory" "$work/subdirectory/consumer"
answers "add_subdirectory with trevallo-airspace" "$work/subdirectory/consumer_airspace"
is_shared "$work/subdirectory/consumer" libtrevallo
installs_itself_only subdirectory

(cd "$root" && git ls-files --cached --others --exclude-standard -z | tar -czf "$work/trevallo.tar.gz" --null -T -)
quietly cmake -S "$root/tests/consumer/fetched" -B "$work/fetched" -G Ninja -DTREVALLO_ARCHIVE="$work/trevallo.tar.gz"
project fetched fetched -DTREVALLO_AIRSPACE=ON
answers "FetchContent" "$work/fetched/consumer"
answers "FetchContent with trevallo-airspace" "$work/fetched/consumer_airspace"
is_static "$work/fetched/consumer_airspace"
installs_itself_only fetched
