#!/usr/bin/env bash
# Whether each file of the library, the simulator and the probe includes what it uses, and nothing else; --fix mends it:
# scripts/check_includes.sh [--fix] FOLDER [FILE]..., where FOLDER is a build folder that clang has configured and in
# which the binding has been generated.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
fix=()
jobs=$(nproc)
if [ "${1:-}" = --fix ]; then
    fix=(--fix --format-style=file)
    jobs=1 # no header changes while it is read
    shift
fi
folder=${1:?usage: scripts/check_includes.sh [--fix] FOLDER [FILE]...}
shift
if [ $# -eq 0 ]; then
    mapfile -t files < <(git ls-files -co --exclude-standard -- {plugin,service,conversion,operations,changelist} \
        {xmlhelper,simulator,probe} ':!service/schema' | grep -E '\.(h|cpp|c)$')
    set -- "${files[@]}"
fi
# A header is looked at with the flags of a neighbour, which needn't know where the binding is.
printf '%s\n' "$@" | xargs -P"$jobs" -n4 clang-tidy-19 -p "$folder" --quiet --config-file=scripts/includes.clang-tidy \
    --extra-arg=-isystem"$(realpath "$folder")/binding" "${fix[@]}" 2> "$folder/includes.err" || {
    cat "$folder/includes.err" >&2
    exit 1
}
