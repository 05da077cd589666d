#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# packages.sh FOLDER TARBALL: tries the Debian packages in FOLDER in the small system of TARBALL, as root: they install
# one after the other, the program runs, the examples are compiled against what is installed and run, and nothing is left
# when they are removed. lintian finds no errors.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
packages=$(cd "$1" && pwd)
tarball=$2
system=$(mktemp -d)
trap 'rm -rf "$system"' EXIT

fail() { echo "packages: $1" >&2; exit 1; }
in_system() { chroot "$system" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 "$@"; }
install() { in_system dpkg --install "${@/#//tmp/}" >/dev/null || fail "$* do not install"; }

# all files, less those that dpkg and ldconfig keep for themselves
files() {
    (cd "$system" && find . \( -path ./proc -o -path ./sys -o -path ./dev -o -path ./tmp -o -path ./var/lib/dpkg \
        -o -path ./var/log -o -path ./var/cache -o -path ./etc/ld.so.cache \) -prune -o -print | sort)
}

lintian --fail-on error "$packages"/*.deb

tar -xf "$tarball" -C "$system"
cp "$packages"/*.deb "$root"/examples/{embed,live_aircraft}.cpp "$root/data/sample.beast" "$system/tmp"
cd "$packages"
headers=(lib*-dev_*.deb) program=$(echo trevallo_*.deb)
mapfile -t libraries < <(printf '%s\n' lib*.deb | grep -v -- -dev_)
names=("${libraries[@]%%_*}" "${headers[@]%%_*}" "${program%%_*}")
before=$(files)

for package in "${headers[@]}" "$program"; do
    ! in_system dpkg --install "/tmp/$package" &>/dev/null || fail "$package installs without the libraries"
    in_system dpkg --purge "${package%%_*}" &>/dev/null
done

install "${libraries[@]}"
install "$program"
in_system trevallo --version | head -n 1
aircraft=$(in_system trevallo track --log error /tmp/sample.beast | grep -cE '^[0-9A-F]{6}  ') ||
    fail "the program tracks nothing"
echo "program: $aircraft aircraft"

install "${headers[@]}"
[[ -s $system/usr/share/trevallo/conformance/conformance.jsonl ]] || fail "the conformance set is not in the packages"

# example NAME LIBRARY ENCODING: compiles it with pkg-config and lets it read simulated traffic
example() {
    # shellcheck disable=SC2016
    in_system sh -c 'g++ -std=c++17 -Wall -Werror /tmp/$1.cpp -o /tmp/$1 $(pkg-config --cflags --libs "$2")' sh "$1" "$2"
    in_system sh -c "trevallo simulate --format $3 --aircraft 5 --seconds 10 | /tmp/$1 2>/dev/null"
}

heard=$(example embed trevallo avr | wc -l)
((heard == 5)) || fail "the example of the core hears $heard of 5 aircraft"
heard=$(example live_aircraft trevallo-airspace beast | grep -oE '^[0-9A-F]{6} ' | sort -u | wc -l)
((heard == 5)) || fail "the example of a receiver's stream hears $heard of 5 aircraft"
echo "examples: $heard aircraft"

for project in installed airspace; do
    cmake -S "$root/tests/consumer/$project" -B "$system/tmp/$project" -DCMAKE_PREFIX_PATH="$system/usr" >/dev/null
    cmake --build "$system/tmp/$project" >/dev/null
    echo "find_package, $project: $(in_system sh -c "/tmp/$project/consumer*")"
done

for name in "${names[@]}"; do
    for document in copyright changelog.Debian.gz; do
        [[ -s $system/usr/share/doc/$name/$document ]] || fail "$name has no $document"
    done
done

in_system dpkg --purge "${names[@]}" >/dev/null
diff <(echo "$before") <(files) || fail "removing the packages does not leave the system as it was"
[[ -z $(in_system dpkg --audit) ]] || fail "dpkg is left with work to do"
