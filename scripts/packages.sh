# Installs what a list of packages in packaging/ names and this machine lacks. Sourced by demo.sh and test.sh.

missing_packages() {
    local list=$1 package
    while read -r package; do
        case $package in '' | '#'*) continue ;; esac
        dpkg-query -W -f='${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed || printf '%s\n' "$package"
    done < "$list"
}

install_missing_packages() {
    local list=$1 missing run=()
    command -v dpkg-query > /dev/null || {
        echo "This is no Debian machine: install by hand what $list names." >&2
        return 1
    }
    missing=$(missing_packages "$list" | tr '\n' ' ')
    [ -n "$missing" ] || return 0
    echo "Missing Debian packages: $missing"
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo > /dev/null || {
            echo "Install them as root: apt-get install $missing" >&2
            return 1
        }
        run=(sudo)
    fi
    "${run[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -qq &&
        # shellcheck disable=SC2086 # a list of words
        "${run[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing > /dev/null
    missing=$(missing_packages "$list" | tr '\n' ' ')
    [ -z "$missing" ] || {
        echo "These Debian packages could not be installed: $missing" >&2
        return 1
    }
}
