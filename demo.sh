#!/usr/bin/env bash
# Installs what is missing, builds, starts the storage-service simulator on this machine's loopback, and plays the
# host against it: what an administrator would see in a minute. Leaves nothing behind but the build folder.
# With --stay the simulators go on at the end, until Ctrl-C, for a look at their pages in a browser.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
case $* in
'') stay=false ;;
--stay) stay=true ;;
*)
    echo "usage: ./demo.sh [--stay]" >&2
    exit 2
    ;;
esac
. scripts/packages.sh
install_missing_packages packaging/debian-packages.txt
# What another checkout has compiled serves this one too.
export CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=true

# Loopback addresses of the demo's own, so that the well-known ports are free whatever else runs here.
service_address=127.85.86.1
empty_address=127.85.86.2
slow_address=127.85.86.3
filer_address=127.85.86.4
other_address=127.85.86.5
name=Network_NTAP:$service_address
export SOAPWRAPPER_CREDENTIAL=simulator

work=$(mktemp -d)
simulators=()
clean_up() {
    for simulator in "${simulators[@]}"; do
        kill "$simulator" 2> /dev/null || true
        wait "$simulator" 2> /dev/null || true
    done
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

start_simulator() { # at this address, with these options
    local address=$1 simulator
    shift
    build/soapwrapper-sim --http "$address:8085" --https "$address:8086" "$@" \
        > "$work/$address.out" 2> "$work/$address.err" &
    simulator=$!
    simulators+=("$simulator")
    until grep -qx ready "$work/$address.out"; do
        kill -0 "$simulator" 2> /dev/null || {
            cat "$work/$address.err" >&2
            exit 1
        }
        sleep 0.1
    done
    cat "$work/$address.out"
}

# A command that shows its progress on a terminal. Where the demo has none, each state of the line gets its own.
show_on_a_terminal() {
    printf '\n$ %s\n' "${*/#build\//}"
    if [ -t 2 ]; then
        "$@"
    else
        script -qec "$(printf '%q ' "$@")" /dev/null < /dev/null | tr '\r' '\n' | sed '/^ *$/d'
    fi
}

# What Ctrl-C does to a command that waits for an operation of the slow service.
interrupt_when_waiting() {
    local waiting code=0
    printf '\n$ %s\n^C\n' "${*/#build\//}"
    env --default-signal=INT "$@" & # the shell would have it ignore the signal
    waiting=$!
    until grep -q asyncWaitSnap "$work/$slow_address.err"; do
        kill -0 "$waiting"
        sleep 0.1
    done
    kill -INT "$waiting"
    wait "$waiting" || code=$?
    [ "$code" -eq 5 ] || {
        echo "expected exit code 5, got $code" >&2
        exit 1
    }
}

act "Building (a first build takes a few minutes)"
cmake -S . -B build -G Ninja > "$work/cmake.log" 2>&1 || {
    cat "$work/cmake.log"
    exit 1
}
ninja -C build --quiet libsoapwrapper.so soapwrapper-sim libsoapwrapper-zapi-sim.so soapwrapper-probe \
    > "$work/build.log" 2>&1 || {
    tail -n 60 "$work/build.log"
    exit 1
}

act "A storage service on this machine"
start_simulator "$service_address" --ca-out "$work/storage-ca.pem"
page=http://$service_address:8085
printf '\nIts page, for a browser on this machine as long as the demo runs: %s/\n' "$page"

probe=build/soapwrapper-probe

act "Before the first backup: is everything in place?"
show $probe check "$name"

act "Discovery: https first, then http; the best interface that both sides speak is chosen"
show $probe discover "$name"

act "What the library tells the host's log meanwhile"
show $probe --log record discover "$name" 2>&1 | grep -E 'soap_endpoint|Interface (received|selected)|^\$'

act "A session: log in, read the properties, log out"
show $probe --trace "$work/trace" server "$name"

act "The login of it as it went over the wire, within TLS, without what is secret"
show sed -n '/openServer/,/^$/p' "$work/trace"

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

act "Long operations: a snapshot is made while the probe waits, copied to another server, compared with the volume"
show_on_a_terminal $probe snapshot create "$name" demo.1 --volume nfs:filer1:/vol/home
show $probe snapshots "$name" home
show_on_a_terminal $probe snapshot copy "$name" home demo.1 --target "Network_VAULT:$service_address/vault_home"
show $probe snapshots "Network_VAULT:$service_address" vault_home
show $probe snapshot diff "$name" nightly.0105 --volume nfs:filer1:/vol/home
show $probe snapshot diff "$name" demo.1 --volume nfs:filer1:/vol/home

act "The same under a name of the host's: it goes on by itself, and can be asked after"
show $probe snapshot create "$name" demo.2 --volume nfs:filer1:/vol/home --name demo-operation --no-wait
show $probe operation status "$name" --name demo-operation
show $probe operation wait "$name" --name demo-operation
show $probe operation status "$name" --name demo-operation

act "Ctrl-C while it waits: the operation is cancelled at the service, and there is no snapshot"
build/soapwrapper-sim --print-scenario | sed '1s/{/{"operations": {"seconds": {"create": 600}},/' > "$work/slow.json"
start_simulator "$slow_address" --scenario "$work/slow.json" --verbose
slow=Network_NTAP:$slow_address
interrupt_when_waiting $probe snapshot create "$slow" demo.3 --volume nfs:filer1:/vol/home
show_failure 4 $probe snapshot show "$slow" home demo.3

act "Events: what the steps above made happen"
show $probe events "$name"
show $probe --json events "$name" --from 8 --delete
show $probe events "$name"

act "A control command, handed through to the service"
show $probe ioctl "$name" 1 --args "are you there?" --output

act "What the service saw of that, by the API that its page uses"
show curl -fsS "$page/api/requests?limit=1"

act "A fault in the midst of it: the next login is refused once, as if the service were starting"
show curl -fsS -H 'Content-Type: application/json' "$page/api/faults" \
    -d '{"operation": "openServer", "kind": "fault", "code": 2060005, "count": 1}'
show_failure 4 $probe server "$name"
show $probe server "$name"

act "A channel to trust: the service's certificate is checked, and nothing goes out in the clear"
mkdir "$work/trusted"
cp build/libsoapwrapper.so "$work/storage-ca.pem" "$work/trusted/"
trusting=(--library "$work/trusted/libsoapwrapper.so" server "$name")
printf '%s\n' "tls_ca_file = storage-ca.pem" "require_tls = yes" "tls_min_version = 1.2" \
    > "$work/trusted/soapwrapper.conf"
show cat "$work/trusted/soapwrapper.conf"
show $probe "${trusting[@]}"

act "The same where the authority is another one: refused, over https, and not tried over http"
start_simulator "$other_address" --ca-out "$work/trusted/storage-ca.pem" > /dev/null
show_failure 4 $probe --log failure "${trusting[@]}"

act "A server that the service doesn't know"
show_failure 4 $probe server "Network_OTHER:$service_address"

act "A service that isn't there"
show_failure 4 $probe discover "Network_NTAP:$empty_address"

act "The main job: what changed between two snapshots, here two directories of this machine"
mkdir -p "$work"/monday/{plans,photos} "$work/tuesday"
echo "first draft" > "$work/monday/plans/bridge.txt"
echo "to be dropped" > "$work/monday/plans/tunnel.txt"
echo "1234" > "$work/monday/photos/Brücke im Abendlicht.jpg"
echo "never touched" > "$work/monday/photos/river.jpg"
cp -a "$work/monday/." "$work/tuesday/"
echo "second draft, somewhat longer" > "$work/tuesday/plans/bridge.txt"
rm "$work/tuesday/plans/tunnel.txt"
echo "12345678" > "$work/tuesday/photos/Tal & Hügel.jpg"
ndmp_volume() { printf '{"ndmp": {"exportfiler": "filer1", "exportpath": "/vol/data%s"}}' "$1"; }
nfs_volume='{"nfs": {"exportHost": "filer1", "exportName": "/vol/data", "exportPath": "/vol/data"}}'
cat > "$work/scenario.json" << END
{"changeLists": {"batch": 3}, "servers": [{"prefix": "Network_NTAP", "lsus": [{
  "name": "data",
  "volumes": [$(ndmp_volume ""), $nfs_volume],
  "snapshots": [
    {"name": "monday", "tree": "monday", "volume": $(ndmp_volume /.snapshot/monday)},
    {"name": "tuesday", "tree": "tuesday", "volume": $(ndmp_volume /.snapshot/tuesday)}]}]}]}
END
start_simulator "$filer_address" --scenario "$work/scenario.json"
filer=Network_NTAP:$filer_address

act "From the service, with the filer's paths and with the host's"
show $probe changes "$filer" data monday tuesday
show $probe changes "$filer" data monday tuesday --mount /mnt/data
show $probe changes "$filer" data monday tuesday --mount /mnt/data --filter /plans

act "From the filer, through a second plug-in (here a stand-in for it)"
export SOAPWRAPPER_SIM_SCENARIO=$work/scenario.json SOAPWRAPPER_ZAPI_PASSWORD=simulator
by_zapi=(--manager build/libsoapwrapper-zapi-sim.so changes "$filer" data monday tuesday
    --route zapi --zapi-user admin --mount /mnt/data)
show $probe "${by_zapi[@]}"
$probe --json changes "$filer" data monday tuesday --mount /mnt/data | grep '"path"' | sort > "$work/by_service"
$probe --json "${by_zapi[@]}" | grep '"path"' | sort > "$work/by_zapi"
cmp "$work/by_service" "$work/by_zapi"
printf '\nBoth routes tell the same %s changes.\n' "$(wc -l < "$work/by_zapi")"

act "Done"
if $stay; then
    printf 'The page of the simulator is at %s/ until Ctrl-C.\n' "$page"
    wait "${simulators[0]}"
fi
