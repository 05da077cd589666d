#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Where the road of a stream spends its time: the functions that take most.
# Usage: profile.sh ROAD FOLDER, where ROAD is the program trevallo_road and FOLDER takes the recorded data.
# perf samples it (who calls what: perf report -i FOLDER/perf.data); where the kernel does not let perf work, callgrind
# counts instructions.
set -euo pipefail

road=$1
folder=$2
stream=aircraft_200.beast
passes=200
functions=25

perf_works() { perf record -o "$folder/perf.trial" true && perf report -i "$folder/perf.trial"; } &>/dev/null </dev/null

if perf_works; then
    perf record -q -F 2000 --call-graph fp -o "$folder/perf.data" "$road" "$stream" "$passes" >/dev/null
    perf report -i "$folder/perf.data" --stdio --no-children --call-graph none --percent-limit 0 \
        --fields overhead,dso,symbol 2>/dev/null | grep -vE '^(#|$)' | sed -n "1,${functions}p" | cut -c1-140
else
    echo "perf does not work here; these are counts of instructions" >&2
    valgrind --tool=callgrind --callgrind-out-file="$folder/callgrind.out" --toggle-collect=trevallo_road_pass \
        "$road" "$stream" &>"$folder/callgrind.log" || { cat "$folder/callgrind.log" >&2; exit 1; }
    # the lines of a function are counted apart for each file from which something was inlined into it
    callgrind_annotate --auto=no --threshold=100 "$folder/callgrind.out" |
        sed -nE 's/^ *[0-9,]+ \( *([0-9.]+)%\) +[^:]*:(.*)/\1 \2/p' |
        awk '{ share = $1; $1 = ""; sum[$0] += share }
             END { for (name in sum) printf "%8.2f%% %s\n", sum[name], name }' |
        sort -rn | sed -n "1,${functions}p" | cut -c1-140
fi
