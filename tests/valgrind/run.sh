#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# run.sh BUILD_FOLDER   runs the test programs, the examples and the program under valgrind: nothing may be read that is not
# there or not set, and nothing is left when a process ends, the memory that threads keep for the next frames included.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

build=$1
logs=$build/valgrind
rm -rf "$logs"
mkdir -p "$logs"

# watched NAME COMMAND...: shows what the command has said only if it fails.
watched() {
    local log=$logs/$1
    shift
    valgrind --quiet --leak-check=full --show-leak-kinds=all --errors-for-leak-kinds=all --error-exitcode=99 "$@" \
        >"$log" 2>&1 || { cat "$log" >&2; echo "valgrind: FAILED: $*" >&2; return 1; }
}

# Processes that are made to be killed, or to end at once, leave all they have: these tests are for the other checks.
watched_tests() {
    local unwatched='AircraftDBFaults.*:FileReplacement.GivesEachProcess*:FileReplacement.KeepsTheGroup*'
    watched "$(basename "$1")" "$1" --gtest_brief=1 --gtest_filter="-$unwatched"
}

# The program that counts what is allocated has operators of its own for that, which valgrind replaces in part.
mapfile -t tests < <(find "$build/tests" -type f -executable -name 'trevallo_*_tests' ! -name trevallo_allocations_tests)
program=$build/apps/trevallo/trevallo
"$program" simulate --seconds 5 --format avr --output "$logs/stream.avr"

export -f watched watched_tests
export build logs
failed=0
printf '%s\n' "${tests[@]}" | xargs -P "$(nproc)" -I {} bash -c 'watched_tests {}' || failed=1
watched example "$build/examples/trevallo_example_embed" <"$logs/stream.avr" || failed=1
watched live_aircraft "$build/examples/tutorial/live_aircraft" <"$logs/stream.avr" || failed=1
watched track "$program" track --html "$logs/pages" --db "$logs/aircraft.csv" data/sample.beast || failed=1
watched track_again "$program" track --db "$logs/aircraft.csv" "$logs/stream.avr" || failed=1
watched simulate "$program" simulate --seconds 5 --format beast --output "$logs/stream.beast" || failed=1
((failed == 0 && ${#tests[@]} > 0)) && echo "No leak and no invalid access in ${#tests[@]} test programs, examples and program."
