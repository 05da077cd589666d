#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# clean_root.sh TARBALL: makes a small Debian system of this system's release, with a compiler, unless TARBALL has been
# made within the last week. It comes from where this system's own packages come from.
set -euo pipefail
tarball=$1
[[ -z $(find "$tarball" -mtime -7 2>/dev/null) ]] || exit 0

work=$(mktemp -d)
trap 'rm -rf "$work" "$tarball.part"' EXIT
apt-config dump | grep -E '^Acquire::(https?|Retries)\b' >"$work/apt.conf" || true
shopt -s nullglob
sources=(/etc/apt/sources.list /etc/apt/sources.list.d/*.{list,sources})
release=$(. /etc/os-release && echo "$VERSION_CODENAME")
mmdebstrap --quiet --variant=apt --format=tar --include=g++,pkg-config --aptopt="$work/apt.conf" \
    "$release" "$tarball.part" $(ls "${sources[@]}" 2>/dev/null)
mv "$tarball.part" "$tarball"
