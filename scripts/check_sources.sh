#!/usr/bin/env bash
# What a program can see of the house rules: a room includes only from the rooms named beside it, no file
# includes itself by way of others, the public headers include each other only, and the formatting is the tree's.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
bad=0

mapfile -t sources < <(git ls-files -co --exclude-standard -- '*.h' '*.cpp' '*.c' ':!service/schema')
[ "${#sources[@]}" -gt 0 ] || {
    echo "No sources are known here: this check asks git for them." >&2
    exit 1
}

# A room is a folder, without those below it.
declare -A may_include=(
    [plugin/host]=""
    [plugin/base]="plugin/host"
    [service]="plugin/host plugin/base"
    [service/contract]=""
    [conversion]="plugin/host plugin/base service"
    [operations]="plugin/host plugin/base service conversion"
    [changelist]="plugin/host plugin/base service conversion operations xmlhelper"
    [plugin]="plugin/host plugin/base service changelist"
    [xmlhelper]=""
    [messages]=""
    [simulator/front]=""
    [simulator/contract]="simulator/front"
    [simulator/page]="simulator/front"
    [simulator/scenario]="plugin/host"
    [simulator/storage]="plugin/host simulator/scenario"
    [simulator/traffic]="messages simulator/front"
    [simulator/replay]="messages simulator/front"
    [simulator/service]="plugin/host simulator/front simulator/scenario simulator/storage simulator/traffic"
    [simulator/api]="plugin/host simulator/front simulator/contract simulator/scenario simulator/storage simulator/traffic \
        simulator/service"
    [simulator]="plugin/host messages simulator/front simulator/contract simulator/page simulator/replay simulator/scenario \
        simulator/storage simulator/traffic simulator/service simulator/api"
    [simulator/zapi]="plugin/host simulator/scenario"
    [probe/output]="plugin/host"
    [probe/wire]="plugin/host messages probe/output"
    [probe/library]="plugin/host messages probe/output probe/wire"
    [probe/arguments]="plugin/host probe/output probe/library"
    [probe/completion]="probe/output probe/library"
    [probe/login]="plugin/host probe/output probe/library probe/arguments"
    [probe/lists]="plugin/host probe/output probe/library probe/arguments"
    [probe/operations]="plugin/host probe/output probe/library probe/arguments"
    [probe/events]="plugin/host probe/output probe/library"
    [probe/check]="plugin/host probe/output probe/wire probe/library"
    [probe/watch]="plugin/host probe/output probe/library probe/arguments probe/operations"
    [probe/commands]="plugin/host probe/output probe/library probe/arguments probe/check probe/login probe/lists \
        probe/operations probe/events probe/completion probe/watch"
    [probe/program]="plugin/host probe/output probe/wire probe/library probe/arguments probe/commands probe/completion"
    [probe]="probe/output probe/program"
)

# Each include of our own as "FILE INCLUDED".
includes=$(grep -HoE '^#include "[^"]+/[^"]+"' "${sources[@]}" | sed -E 's/:#include "/ /; s/"$//')

while read -r file included; do
    room=${file%/*}
    [[ -v may_include[$room] ]] || continue
    case " $room ${may_include[$room]} " in
    *" ${included%/*} "*) ;;
    *)
        echo "$file includes $included, which isn't open to $room/"
        bad=1
        ;;
    esac
done <<< "$includes"
for file in "${sources[@]}"; do
    room=${file%/*}
    case $room in
    tests* | bench | fuzz | examples) continue ;;
    esac
    [[ -v may_include[$room] ]] || {
        echo "$file stands in a room of which nobody says what it may include"
        bad=1
    }
done

# A header and its source are one, which is why a source that includes its own header says nothing.
circles=$(sed -E 's/\.(h|cpp|c)( |$)/\2/g' <<< "$includes" | awk '$1 != $2' | tsort 2>&1 > /dev/null) || {
    echo "These include each other:"
    sed 's/^tsort: //' <<< "$circles"
    bad=1
}

if grep -nE '#include "[^"]*/' plugin/host/*.h; then
    echo "What is in plugin/host/ is installed for hosts, and its headers must include their neighbours alone"
    bad=1
fi

# Another version formats otherwise.
formatter=$(command -v clang-format-14 || command -v clang-format)
case $("$formatter" --version) in
*"version 14."*) "$formatter" --dry-run -Werror "${sources[@]}" || bad=1 ;;
*) echo "The formatting isn't checked: it is clang-format 14's, and here is $("$formatter" --version)." ;;
esac
exit "$bad"
