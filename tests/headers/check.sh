#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Compiles every public header alone, with both compilers, and all together at each language level that hosts may use.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

compile() {
    local compiler=$1 standard=$2 header=$3
    echo "#include <$header>" | "$compiler" "-std=$standard" -Wall -Wextra -Wpedantic -Werror -Iinclude -x c++ -fsyntax-only - ||
        { echo "$header does not compile alone: $compiler -std=$standard" >&2; return 1; }
}
export -f compile

headers=$(cd include && find . -name '*.h' -printf '%P\n' | sort)
umbrellas=$(cd include && for folder in *; do echo "$folder/$folder.h"; done)
{
    for header in $headers; do printf '%s\n' "g++ c++17 $header" "clang++ c++17 $header"; done
    for header in $umbrellas; do # all of them, at the levels above
        for standard in c++20 c++2b; do printf '%s\n' "g++ $standard $header" "clang++ $standard $header"; done
    done
} | xargs -P "$(nproc)" -L 1 bash -c 'compile "$@"' _
echo "$(wc -w <<<"$headers") headers compile alone"
