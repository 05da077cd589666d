#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The promises of the shared libraries to the programs that are linked with them.
# Usage: check.sh [--record] LIBRARY..., where each LIBRARY has debug information.
#   - its interface is the recorded one, in NAME.abi: symbols, functions, types, the slots of virtual tables (--record makes
#     it the record);
#   - it exports its own namespaces only, and nothing private;
#   - it takes nothing from the system that it says it does not use: sockets, threads, environment, processes.
# In a record, each symbol says since which version of the project it is exported: the lists of symbols in the packages
# are made of it.
set -euo pipefail

declare -A namespaces=( # what each library may export
    [trevallo]='quorvel::modes|html'
    [trevallo-airspace]='quorvel::airspace'
)

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
now=$(mktemp)
trap 'rm -f "$now"' EXIT

forbidden='socket|connect|bind|listen|accept[0-9]?|send(to|msg)?|recv(from|msg)?|getaddrinfo|gethostby.*'
forbidden+='|p?poll|p?select|epoll_.*|shutdown|[gs]etsockopt'
forbidden+='|pthread_(create|mutex.*|cond.*|rwlock.*|spin.*)|thrd_.*|mtx_.*|.*_ZNSt6thread.*|.*condition_variable.*|sem_.*|flock|lockf'
forbidden+='|(secure_)?getenv|(un)?setenv|clearenv|putenv|_*environ|v?fork|clone|wait(pid|id|[34])?|pipe2?|exec[vl].*|posix_spawn.*|system|popen|kill|raise|signal|sigaction'
forbidden+='|_?exit|abort|dlopen|dlsym|setlocale|setitimer|alarm'

failed=0
complain() { echo "$1" >&2; failed=1; }

# write_interface LIBRARY: as libabigail writes it, into $now
write_interface() {
    abidw --exported-interfaces-only --suppressions "$root/tests/abi/suppressions.ini" --headers-dir "$root/include" \
        --drop-private-types --drop-undefined-syms --no-elf-needed --no-write-default-sizes --no-parameter-names \
        --no-corpus-path --no-comp-dir-path --no-show-locs --type-id-style hash --out-file "$now" "$1"
    sed -i "s| path='$root/| path='|" "$now" # the record is of no folder
}

# make_record RECORD: symbols of the last record keep their version, new ones are there since this one
make_record() {
    local version
    version=$(sed -nE 's/.*constexpr int kVersion.* = ([0-9]+);/\1/p' "$root/src/core/version.h" | paste -sd .)
    touch "$1"
    awk -F"'" -v version="$version" '
        FILENAME == ARGV[1] {
            if (/<elf-symbol / && match($0, / since=\047[^\047]+/)) since[$2] = substr($0, RSTART + 8, RLENGTH - 8)
            next
        }
        /<elf-symbol / { sub(/\/>$/, " since=\047" ($2 in since ? since[$2] : version) "\047/>") }
        { print }' "$1" "$now" >"$now.since"
    install -m 644 "$now.since" "$1"
    rm "$now.since"
}

symbols() { grep -o '<elf-symbol name=[^ ]*' "$1"; }

check() {
    local library=$1 name=$2 record=$3 exports private imports
    abidiff --no-added-syms "$record" "$now" >/dev/null ||
        { abidiff "$record" "$now" >&2 || true; complain "The interface of $name has changed: ./dev abi --record, if that is meant."; }
    cmp -s <(symbols "$record") <(symbols "$now") ||
        complain "Other symbols of $name are exported than recorded: ./dev abi --record, if that is meant."

    exports=$(nm -DC --defined-only "$library" | cut -c20- |
        grep -vE "^((vtable|typeinfo( name)?) for )?(${namespaces[$name]})::" || true)
    [[ -z $exports ]] || complain "$name exports what is not its own: $exports"

    private=$(grep -A 1 "<member-function access='private'" "$now" | grep -o "elf-symbol-id='[^']*" | cut -d "'" -f 2 | c++filt || true)
    [[ -z $private ]] || complain "$name exports what is private (TREVALLO_HIDDEN hides it): $private"

    imports=$(nm -D --undefined-only "$library" | awk '{ print $2 }' | sed 's/@.*//' | grep -xE "$forbidden" || true)
    [[ -z $imports ]] || complain "$name takes from the system what it promises not to use: $imports"
}

recording=
if [[ $1 == --record ]]; then
    recording=yes
    shift
fi
for library; do
    name=$(basename "$library" .so)
    name=${name#lib}
    record=$root/tests/abi/$name.abi
    write_interface "$library"
    if [[ $recording ]]; then make_record "$record"; else check "$library" "$name" "$record"; fi
done
exit $failed
