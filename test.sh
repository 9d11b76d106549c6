#!/usr/bin/env bash
# Installs what is missing, builds, and passes the tests: as they are, under the address and
# undefined-behaviour sanitizers with leak detection, under the thread sanitizer; a short run of the fuzzers, the names
# and what each file includes, and clang-tidy. A warning is an error here.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
. scripts/packages.sh
install_missing_packages packaging/debian-packages.txt
install_missing_packages packaging/test-packages.txt
# What another checkout has compiled serves this one too.
export CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=true

jobs=$(nproc)
step() { printf '\n== %s\n' "$*"; }
build() { # folder, target, then cmake's own arguments
    local folder=$1 target=$2
    shift 2
    cmake -S . -B "$folder" -G Ninja -DSOAPWRAPPER_WARNINGS_AS_ERRORS=ON -DSOAPWRAPPER_ASSERTIONS=ON "$@" \
        > "$folder.cmake.log" 2>&1 || {
        cat "$folder.cmake.log"
        return 1
    }
    rm -f "$folder.cmake.log"
    ninja -C "$folder" -j "$jobs" --quiet "$target" > "$folder.build.log" 2>&1 || {
        tail -n 60 "$folder.build.log"
        return 1
    }
    rm -f "$folder.build.log"
}
run_tests() { # folder, then ctest's own arguments
    local folder=$1
    shift
    ctest --test-dir "$folder" -j "$jobs" --output-on-failure --no-tests=error "$@" |
        { grep -vE '^ +Start +[0-9]+: |   Passed +[0-9.]+ sec$' || true; }
}

step "The library, the simulator, the probe and the tests"
build build all
step "Layers and formatting"
scripts/check_sources.sh
step "Tests"
run_tests build

step "Tests under AddressSanitizer and UndefinedBehaviorSanitizer"
export ASAN_OPTIONS=detect_leaks=1:detect_stack_use_after_return=1
export UBSAN_OPTIONS=print_stacktrace=1
build build-asan all -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG="-O1 -g1" -DSOAPWRAPPER_SANITIZE=address,undefined
run_tests build-asan

step "Threads under ThreadSanitizer"
export TSAN_OPTIONS=halt_on_error=1:suppressions=$PWD/tests/thread_sanitizer.supp
build build-tsan thread_tests -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG="-O1 -g1" -DSOAPWRAPPER_SANITIZE=thread
run_tests build-tsan -L threads

step "All but the tests, built with clang, and a short run of each fuzzer"
build build-fuzz all -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ -DSOAPWRAPPER_FUZZ=ON \
    -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG="-O1 -g1" \
    -DSOAPWRAPPER_TESTS=OFF -DSOAPWRAPPER_SANITIZE=address,undefined
scripts/fuzz.sh build-fuzz "${FUZZ_RUNS:-5000}"

step "Names are spelt one way, and each file includes what it uses"
scripts/check_names_and_includes.sh build-fuzz

step "clang-tidy over the library"
scripts/tidy.sh build-fuzz

step "All passed"
