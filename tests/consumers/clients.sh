# shellcheck shell=bash
# For the scripts beside it: builds and runs the program in client/ as a stranger would. Each gets a
# compiler, a language version, and further options.
set -euo pipefail
consumers=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp -r "$consumers/client" "$consumers/embedded" "$work"
export CMAKE_GENERATOR=Ninja CMAKE_BUILD_PARALLEL_LEVEL=${JOBS:-$(nproc)}
warnings="-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Wnon-virtual-dtor -Werror"

# quietly <command...>: shows what the command printed only if it failed.
quietly() {
    "$@" >"$work/log" 2>&1 || { cat "$work/log" >&2 && echo "failed: $*" >&2 && return 1; }
}

client_with_cmake() {
    echo "find_package, $*"
    local build
    build=$(mktemp -d -p "$work")
    quietly cmake -S "$work/client" -B "$build" -DCMAKE_CXX_COMPILER="$1" -DCMAKE_CXX_STANDARD="$2" \
        -DCMAKE_CXX_FLAGS="$warnings" "${@:3}"
    quietly cmake --build "$build"
    quietly "$build/client"
}

client_with_pkg_config() {
    echo "pkg-config, $*"
    local flags
    flags=$(pkg-config --cflags --libs "${@:3}" "kaxml >= 0.1")
    # shellcheck disable=SC2086
    quietly "$1" "-std=c++$2" -DEXPECTED_STANDARD="$2" $warnings "$work/client/client.cpp" $flags -o "$work/client.out"
    quietly "$work/client.out"
}
