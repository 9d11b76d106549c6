#!/usr/bin/env bash
# Runs every fuzzer of a build folder over its seeds and for some runs more: scripts/fuzz.sh FOLDER [RUNS]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
folder=${1:?usage: scripts/fuzz.sh FOLDER [RUNS]}
runs=${2:-20000}
found=0
for fuzzer in "$folder"/fuzz/*_fuzz; do
    [ -x "$fuzzer" ] || continue
    name=$(basename "$fuzzer" _fuzz)
    found=$((found + 1))
    work=$(mktemp -d)
    trap 'rm -rf "$work"' EXIT
    "$fuzzer" -runs="$runs" -max_total_time=60 -seed=1 -timeout=20 -rss_limit_mb=2048 -print_final_stats=1 \
        -artifact_prefix="$folder/" "$work" "fuzz/seeds/$name" > "$folder/$name.log" 2>&1 || {
        tail -n 60 "$folder/$name.log"
        exit 1
    }
    printf '%-24s %s\n' "$name" "$(grep -m1 number_of_executed_units "$folder/$name.log" || true)"
    rm -rf "$work"
done
[ "$found" -gt 0 ] || { echo "no fuzzer in $folder/fuzz" >&2; exit 1; }
