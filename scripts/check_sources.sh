#!/usr/bin/env bash
# What a program can see of the house rules: a room includes only from floors below its own, the public headers
# include each other only, and the formatting is the tree's.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
bad=0

# room: what it may include from
check_room() {
    local room=$1 allowed=$2 line file included
    while IFS=: read -r file _ line; do
        included=$(sed -E 's/.*"([a-z]+)\/.*/\1/' <<< "$line")
        case " $allowed " in *" $included "*) ;; *)
            echo "$file reaches up or sideways: $line"
            bad=1
            ;;
        esac
    done < <(git ls-files -co --exclude-standard -- "$room" | grep -E '\.(h|cpp|c)$' |
        xargs -r grep -nE '#include "(plugin|service|conversion|operations|changelist|xmlhelper)/' /dev/null)
}
check_room service "plugin service"
check_room conversion "plugin service conversion"
check_room operations "plugin service conversion operations"
check_room changelist "plugin service conversion operations changelist xmlhelper"
check_room xmlhelper "xmlhelper"
check_room tools "plugin tools"

for header in status host_records async_records event_records handles entry_points; do
    [ -e "plugin/$header.h" ] || continue
    if grep -nE '#include "[^"]*/' "plugin/$header.h"; then
        echo "plugin/$header.h is installed for hosts and must include its neighbours alone"
        bad=1
    fi
done

mapfile -t sources < <(git ls-files -co --exclude-standard -- '*.h' '*.cpp' '*.c' ':!service/schema')
# Another version formats otherwise.
formatter=$(command -v clang-format-14 || command -v clang-format)
case $("$formatter" --version) in
*"version 14."*) "$formatter" --dry-run -Werror "${sources[@]}" || bad=1 ;;
*) echo "The formatting isn't checked: it is clang-format 14's, and here is $("$formatter" --version)." ;;
esac
exit "$bad"
