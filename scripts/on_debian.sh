#!/usr/bin/env bash
# Runs a command in a fresh clone of HEAD on a bare Debian of that release: scripts/on_debian.sh RELEASE COMMAND...
# The root gets its packages from where this machine gets its own, and is gone afterwards. In the folder that
# ON_DEBIAN_CACHE names, downloaded packages and what ccache has compiled outlive it.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
[ $# -ge 2 ] || {
    echo "usage: scripts/on_debian.sh RELEASE COMMAND..." >&2
    exit 2
}
[ "$(id -u)" -eq 0 ] || {
    echo "Only root can run something in a root of its own." >&2
    exit 2
}
release=$1
shift
keyring=/usr/share/keyrings/debian-archive-keyring.gpg

if ! command -v mmdebstrap > /dev/null || [ ! -e "$keyring" ]; then
    apt-get update -qq
    DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
        mmdebstrap debian-archive-keyring > /dev/null
fi

archive_of() { # the suite of this machine's own that comes from it
    local found
    # shellcheck disable=SC2016 # fields of apt's
    found=$(apt-get indextargets --format '$(CODENAME) $(REPO_URI)' 'Created-By: Packages' 'Component: main' |
        awk -v suite="$1" '$1 == suite { print $2; exit }')
    [ -n "$found" ] || {
        echo "apt knows no archive of $1 here; if it should, run apt-get update first." >&2
        return 1
    }
    printf '%s\n' "$found"
}
own=$(. /etc/os-release && printf '%s' "$VERSION_CODENAME")
archive=$(archive_of "$own")
security=$(archive_of "$own-security")

work=$(mktemp -d)
root=$work/root
child=
# What is mounted for the root is mounted in a namespace of the child's own, which ends with the child. If this
# machine has something mounted there all the same, it is somebody else's, and nothing is removed through it.
clean_up() {
    if [ -n "$child" ]; then
        kill -KILL "$child" 2> /dev/null || true
        wait "$child" 2> /dev/null || true
    fi
    if grep -qF " $work/" /proc/self/mountinfo; then
        echo "Something is mounted under $work, which is left as it is." >&2
        return
    fi
    rm -rf --one-file-system -- "$work"
}
trap clean_up EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

# In the background, because the shell obeys a signal only after what runs in the foreground; with the terminal's
# input and signals all the same.
alone() {
    local code=0
    unshare --mount --pid --mount-proc --fork --kill-child env --default-signal=INT,QUIT "$@" <&0 &
    child=$!
    wait "$child" || code=$?
    child=
    return "$code"
}

chmod 711 "$work" # the user that apt downloads as must get through
echo "Making a bare $release" >&2
alone mmdebstrap --quiet --mode=root --variant=minbase --include=ca-certificates,git --keyring="$keyring" \
    "$release" "$root" \
    "deb $archive $release main" "deb $archive $release-updates main" "deb $security $release-security main" > "$work/log" 2>&1 || {
    tail -n 20 "$work/log" >&2
    exit 1
}
cp -L /etc/resolv.conf "$root/etc/resolv.conf"
[ -e "$root/etc/hosts" ] || printf '127.0.0.1 localhost\n::1 localhost\n' > "$root/etc/hosts"
git clone --quiet --no-hardlinks . "$root/root/soapwrapper"

keep() { # a folder of the root in the cache
    mkdir -p "$cache/$1" "$root/$2"
    mount --bind "$cache/$1" "$root/$2"
}
enter() {
    root=$1 cache=$2
    shift 2
    mount -t proc proc "$root/proc"
    mount -t sysfs -o ro sysfs "$root/sys"
    mount -t devpts -o newinstance,ptmxmode=666,mode=620,gid=5 devpts "$root/dev/pts"
    mount -t tmpfs -o mode=1777 shm "$root/dev/shm"
    if [ -n "$cache" ]; then
        keep archives var/cache/apt/archives
        keep ccache var/cache/ccache
        set -- CCACHE_DIR=/var/cache/ccache "$@"
    fi
    exec chroot "$root" /usr/bin/env -i --chdir=/root/soapwrapper HOME=/root LANG=C.UTF-8 TERM="${TERM:-dumb}" \
        PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin "$@"
}
export -f enter keep
# shellcheck disable=SC2016 # the arguments are the inner shell's
alone bash -euc 'enter "$@"' enter "$root" "${ON_DEBIAN_CACHE:+$(realpath -m "$ON_DEBIAN_CACHE")/$release}" "$@"
