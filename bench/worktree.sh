#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Checks a revision out beside this one, under build/against, with the benchmarks and presets of this one in it, and
# prints the folder. A checkout that is there already is used again.
# Usage: worktree.sh REVISION
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

commit=$(git rev-parse --verify --quiet "$1^{commit}") || { echo "dev: there is no revision '$1'" >&2; exit 2; }
tree=build/against/$commit
[[ -d $tree ]] || git worktree add --quiet --force --detach "$tree" "$commit"
rm -rf "$tree/bench"
cp -rp bench CMakePresets.json "$tree" # with their times, so that only what has changed is built again
echo "$tree"
