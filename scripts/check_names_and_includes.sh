#!/usr/bin/env bash
# Whether names are spelt as the tree spells them, and whether each file of the library, the simulator and the probe
# includes what it uses, and nothing else: scripts/check_names_and_includes.sh [--names | --fix] FOLDER [FILE]..., where
# FOLDER is a build folder that clang has configured and in which the binding has been generated. --names looks at the
# names alone, as for tests; --fix mends the includes.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
mode=()
jobs=$(nproc)
case ${1:-} in
--names)
    mode=('--checks=-*,readability-identifier-naming')
    shift
    ;;
--fix)
    # A name is mended everywhere or nowhere, which a look at one file can't do.
    mode=(--fix --format-style=file --checks=-readability-identifier-naming)
    jobs=1 # no header changes while it is read
    shift
    ;;
esac
folder=${1:?usage: scripts/check_names_and_includes.sh [--names | --fix] FOLDER [FILE]...}
shift
if [ $# -eq 0 ]; then
    mapfile -t files < <(git ls-files -co --exclude-standard -- {plugin,service,conversion,operations,changelist} \
        {xmlhelper,messages,simulator,probe} ':!service/schema' | grep -E '\.(h|cpp|c)$')
    set -- "${files[@]}"
fi
# A header is looked at with the flags of a neighbour, which needn't know where the binding is.
printf '%s\n' "$@" | xargs -P"$jobs" -n4 clang-tidy-19 -p "$folder" --quiet \
    --config-file=scripts/names_and_includes.clang-tidy --extra-arg=-isystem"$(realpath "$folder")/binding" "${mode[@]}" \
    2> "$folder/names_and_includes.err" || {
    # What it was told to look at, and how much it left out, would bury what it found.
    grep -vE '^(\[[0-9]+/[0-9]+\] Processing file|[0-9]+ warnings? generated\.$)' "$folder/names_and_includes.err" >&2 || true
    exit 1
}
