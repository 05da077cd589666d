#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# run.sh BUILD_FOLDER [TARGET] [SECONDS]         replays the committed inputs of a target, or of every one, then fuzzes it
# run.sh BUILD_FOLDER --replay [TARGET]          replays only
# run.sh BUILD_FOLDER --coverage                 shows which lines of src/ the committed inputs reach
# run.sh BUILD_FOLDER --keep TARGET [INPUT...]   adds inputs to the committed ones: those named, or those of
#                                                build/fuzz-corpus/TARGET that reach what the committed ones do not
# New inputs go to build/fuzz-corpus/TARGET, inputs that fail to build/fuzz-finds/TARGET.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

programs=$1/fuzz
shift
targets=(fuzz/*_target.cpp)
targets=("${targets[@]##*/}")
targets=("${targets[@]%_target.cpp}")

export UBSAN_OPTIONS=print_stacktrace=1
if [[ -w /dev/shm ]]; then export TMPDIR=/dev/shm; fi # files that a target writes need no disk

usage() {
    echo "fuzz: the targets are: ${targets[*]}" >&2
    exit 2
}

# only TARGET: takes the other targets out of the list.
only() {
    [[ " ${targets[*]} " == *" $1 "* ]] || usage
    targets=("$1")
}

# fuzzer TARGET ARGUMENT...: runs it; its output is shown only when something is found.
fuzzer() {
    local target=$1 finds=build/fuzz-finds/$1 log=build/fuzz-$1.log
    local options=(-entropic_scale_per_exec_time=1 -artifact_prefix="$finds/" -timeout=10 -print_final_stats=1)
    shift
    mkdir -p "$finds"
    if [[ -f fuzz/dictionaries/$target.dict ]]; then options+=(-dict="fuzz/dictionaries/$target.dict"); fi
    local status=0
    "$programs/trevallo_fuzz_$target" "${options[@]}" "$@" >"$log" 2>&1 || status=$?
    case $status in
    0) return 0 ;;
    72) echo "fuzz: $target: interrupted" >&2 ;; # libFuzzer's own code: nothing was found
    *)
        tail -n 60 "$log" >&2
        echo "fuzz: $target: FAILED; the input is in $finds" >&2
        ;;
    esac
    return 1
}

committed() { echo "$programs/corpus/$1"; } # the folder in which the build unpacks the inputs of a target

replay() { fuzzer "$1" -runs=0 "$(committed "$1")"; }

# statistic TARGET NAME: a number that the last run has left behind.
statistic() { sed -nE "s/^stat::$2: +//p" "build/fuzz-$1.log"; }

fuzz() {
    local target=$1 seconds=$2
    mkdir -p "build/fuzz-corpus/$target"
    replay "$target" || return
    fuzzer "$target" -max_total_time="$seconds" "build/fuzz-corpus/$target" "$(committed "$target")" || return
    printf '%-12s %12s executions %8s per second\n' "$target" \
        "$(statistic "$target" number_of_executed_units)" "$(statistic "$target" average_exec_per_sec)"
}

# each COMMAND ARGUMENT...: runs it for every target, as many at once as there are processors; fails in the end if one of
# them has.
each() {
    local target running=0 failed=0
    for target in "${targets[@]}"; do
        if ((running == $(nproc))); then
            wait -n || failed=1
            running=$((running - 1))
        fi
        "$1" "$target" "${@:2}" &
        running=$((running + 1))
    done
    for (( ; running > 0; running--)); do wait -n || failed=1; done
    ((failed == 0)) || { echo "fuzz: failed" >&2; exit 1; }
}

coverage() {
    local profiles=$programs/profiles objects=() target
    rm -rf "$profiles"
    for target in "${targets[@]}"; do
        LLVM_PROFILE_FILE=$profiles/$target.profraw replay "$target"
        objects+=(-object "$programs/trevallo_fuzz_$target")
    done
    llvm-profdata merge -sparse "$profiles"/*.profraw -o "$profiles/all.profdata"
    llvm-cov report "${objects[@]:1}" -instr-profile="$profiles/all.profdata" -show-region-summary=false \
        -show-branch-summary=false $(git ls-files 'src/*.cpp' 'src/*.h')
}

# keep TARGET [INPUT...]
keep() {
    local target=$1 inputs=("${@:2}") merged
    if ((${#inputs[@]} == 0)); then
        merged=$(mktemp -d)
        cp "$(committed "$target")"/* "$merged"
        fuzzer "$target" -use_counters=0 -set_cover_merge=1 "$merged" "build/fuzz-corpus/$target"
        inputs=("$merged"/*)
    fi
    fuzz/corpus.py add "fuzz/corpus/$target.txt" "${inputs[@]}"
    git diff --stat -- "fuzz/corpus/$target.txt"
    rm -rf "${merged:-}"
}

case ${1:-} in
--keep)
    only "${2:-}"
    keep "${@:2}"
    ;;
--replay)
    if (($# > 1)); then only "$2"; fi
    each replay
    echo "The committed inputs of ${targets[*]} hold."
    ;;
--coverage) coverage ;;
*)
    if [[ ${1:-} =~ [a-z] ]]; then
        only "$1"
        shift
    fi
    [[ ${1:-20} =~ ^[0-9]+$ ]] || usage
    each fuzz "${1:-20}"
    ;;
esac
