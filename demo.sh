#!/usr/bin/env bash
# Installs what is missing, builds, starts the storage-service simulator on this machine's loopback, and plays the
# host against it: what an administrator would see in a minute. Leaves nothing behind but the build folder.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
. scripts/packages.sh
install_missing_packages packaging/debian-packages.txt
# What another checkout has compiled serves this one too.
export CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=true

# Loopback addresses of the demo's own, so that the well-known ports are free whatever else runs here.
service_address=127.85.86.1
empty_address=127.85.86.2
name=Network_NTAP:$service_address
export SOAPWRAPPER_CREDENTIAL=simulator

work=$(mktemp -d)
simulator=
clean_up() {
    if [ -n "$simulator" ]; then
        kill "$simulator" 2> /dev/null || true
        wait "$simulator" 2> /dev/null || true
    fi
    rm -rf "$work"
}
trap clean_up EXIT
trap 'exit 130' INT TERM

act() { printf '\n\033[1m== %s\033[0m\n' "$*"; }
show() { # a command, as typed and as answered
    printf '\n$ %s\n' "${*/#build\//}"
    "$@"
}
show_failure() { # the same for a command that must fail, with this exit code
    local expected=$1 code=0
    shift
    printf '\n$ %s\n' "${*/#build\//}"
    "$@" || code=$?
    [ "$code" -eq "$expected" ] || {
        echo "expected exit code $expected, got $code" >&2
        exit 1
    }
}

act "Building (a first build takes a few minutes)"
cmake -S . -B build -G Ninja > "$work/cmake.log" 2>&1 || {
    cat "$work/cmake.log"
    exit 1
}
ninja -C build --quiet libsoapwrapper.so soapwrapper-sim soapwrapper-probe > "$work/build.log" 2>&1 || {
    tail -n 60 "$work/build.log"
    exit 1
}

act "A storage service on this machine"
build/soapwrapper-sim --http "$service_address:8085" --https "$service_address:8086" \
    > "$work/simulator.out" 2> "$work/simulator.err" &
simulator=$!
until grep -qx ready "$work/simulator.out"; do
    kill -0 "$simulator" 2> /dev/null || {
        cat "$work/simulator.err" >&2
        exit 1
    }
    sleep 0.1
done
cat "$work/simulator.out"

probe=build/soapwrapper-probe

act "Discovery: https first, then http; the best interface that both sides speak is chosen"
show $probe discover "$name"

act "What the library tells the host's log meanwhile"
show $probe --log record discover "$name" 2>&1 | grep -E 'soap_endpoint|Interface (received|selected)|^\$'

act "A session: log in, read the properties, log out"
show $probe server "$name"

act "What the storage holds: LSUs, images, snapshots"
show $probe lsus "$name"
show $probe lsu "$name" home
show $probe replication "$name" home
show $probe images "$name" home
show $probe snapshots "$name" home
show $probe snapshot show "$name" home nightly.0105
show $probe snapshots "$name" --volume nfs:filer1:/vol/home

act "The same for scripts: JSON, or bare fields"
show $probe --json images "$name" home
show $probe --separator ';' snapshots "$name" home

act "Changing it: an export for a host, a claim, a rollback that is in the way of others, a deletion"
show $probe export create "$name" home nightly.0105 --host client1
show $probe claim "$name" --volume nfs:filer1:/vol/home
show $probe rollback check "$name" home nightly.0105 --volume nfs:filer1:/vol/home
show $probe snapshot delete "$name" home before-cleanup --yes
show $probe snapshots "$name" home
show_failure 2 $probe image delete "$name" home home_1767571200_C1_F1 01/05/2026 < /dev/null
show $probe image delete "$name" home home_1767571200_C1_F1 01/05/2026 --yes
show_failure 4 $probe image show "$name" home home_1767571200_C1_F1 01/05/2026

act "A control command, handed through to the service"
show $probe ioctl "$name" 1 --args "are you there?" --output

act "A server that the service doesn't know"
show_failure 4 $probe server "Network_OTHER:$service_address"

act "A service that isn't there"
show_failure 4 $probe discover "Network_NTAP:$empty_address"

act "Done"
