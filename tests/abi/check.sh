#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The promises of the shared library to the programs that are linked with it.
# Usage: check.sh LIBRARY [--record], where LIBRARY has debug information.
#   - its interface is the recorded one: functions, types (--record makes it the record);
#   - the slots of its virtual tables are those of vtables.txt;
#   - it exports its own namespaces only;
#   - it takes nothing from the system that it says it does not use: sockets, threads, environment, processes.
set -euo pipefail

library=$1
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
record=$root/tests/abi/trevallo.abi
now=$(mktemp)
trap 'rm -f "$now"' EXIT

abidw --exported-interfaces-only --suppressions "$root/tests/abi/suppressions.ini" --headers-dir "$root/include" \
    --drop-private-types --no-corpus-path --no-comp-dir-path --no-show-locs --type-id-style hash --out-file "$now" "$library"
sed -i "s| path='$root/| path='|" "$now" # the record is of no folder

if [[ ${2:-} == --record ]]; then
    install -m 644 "$now" "$record"
    exit
fi

failed=0
complain() { echo "$1" >&2; failed=1; }

abidiff --no-added-syms "$record" "$now" >/dev/null ||
    { abidiff "$record" "$now" >&2 || true; complain "The interface has changed: ./dev abi --record, if that is meant."; }
cmp -s <(grep -o 'elf-symbol name=[^ ]*' "$record") <(grep -o 'elf-symbol name=[^ ]*' "$now") ||
    complain "Other symbols are exported than recorded: ./dev abi --record, if that is meant."

"$root/tests/abi/vtables.py" || complain "Virtual tables have changed: no program linked with the library before would work."

exports=$(nm -DC --defined-only "$library" | cut -c20- |
    grep -vE '^((vtable|typeinfo( name)?) for )?(quorvel::modes|html)::' || true)
[[ -z $exports ]] || complain "It exports what is not its own: $exports"

forbidden='socket|connect|bind|listen|accept[0-9]?|send(to|msg)?|recv(from|msg)?|getaddrinfo|gethostby.*'
forbidden+='|p?poll|p?select|epoll_.*|shutdown|[gs]etsockopt'
forbidden+='|pthread_(create|mutex.*|cond.*|rwlock.*|spin.*)|thrd_.*|mtx_.*|.*_ZNSt6thread.*|.*condition_variable.*|sem_.*|flock|lockf'
forbidden+='|(secure_)?getenv|(un)?setenv|clearenv|putenv|_*environ|v?fork|clone|wait(pid|id|[34])?|pipe2?|exec[vl].*|posix_spawn.*|system|popen|kill|raise|signal|sigaction'
forbidden+='|_?exit|abort|dlopen|dlsym|setlocale|setitimer|alarm'
imports=$(nm -D --undefined-only "$library" | awk '{ print $2 }' | sed 's/@.*//' | grep -xE "$forbidden" || true)
[[ -z $imports ]] || complain "It takes from the system what it promises not to use: $imports"

exit $failed
