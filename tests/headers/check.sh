#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Compiles every public header alone, with both compilers and at each language level that hosts may use.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

compile() {
    local compiler=$1 standard=$2 header=$3
    echo "#include <$header>" | "$compiler" "-std=$standard" -Wall -Wextra -Wpedantic -Werror -Iinclude -x c++ -fsyntax-only - ||
        { echo "$header does not compile alone: $compiler -std=$standard" >&2; return 1; }
}
export -f compile

headers=$(cd include && find modes -name '*.h' | sort)
for compiler in g++ clang++; do
    for standard in c++17 c++20 c++2b; do
        for header in $headers; do echo "$compiler $standard $header"; done
    done
done | xargs -P "$(nproc)" -L 1 bash -c 'compile "$@"' _
echo "$(wc -w <<<"$headers") headers compile alone"
