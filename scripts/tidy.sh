#!/usr/bin/env bash
# clang-tidy over the library's rooms, or over the files that are named: scripts/tidy.sh FOLDER [FILE]..., where FOLDER
# is a build folder that clang has configured.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
folder=${1:?usage: scripts/tidy.sh FOLDER [FILE]...}
shift
if [ $# -eq 0 ]; then
    set -- plugin/*.cpp plugin/*/*.cpp service/*.cpp conversion/*.cpp operations/*.cpp changelist/*.cpp xmlhelper/*.cpp
fi
printf '%s\n' "$@" | grep -v nothrow_stand_in | xargs -P"$(nproc)" -n4 clang-tidy-19 -p "$folder" --quiet 2> "$folder/tidy.err" || {
    # What it was told to look at, and how much it left out, would bury what it found.
    grep -vE '^(\[[0-9]+/[0-9]+\] Processing file|[0-9]+ warnings? generated\.$)' "$folder/tidy.err" >&2 || true
    exit 1
}
