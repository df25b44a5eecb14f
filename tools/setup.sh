#!/bin/sh
# Installs what the build needs and this machine lacks, from Debian's own packages.
#
#   tools/setup.sh           compiler, CMake, Ninja, libxml2; GoogleTest and locales for the tests
#   tools/setup.sh ci        also Clang and its tools, for the whole set of checks
#   tools/setup.sh packages  also what CPack needs to make Debian packages
#   tools/setup.sh coverage  also gcovr
#   tools/setup.sh bench     also Google Benchmark, and pugixml to compare with
#   tools/setup.sh docs      also Doxygen
#
# Does nothing, and needs no rights, when everything is there.
set -eu

packages="g++ cmake ninja-build pkg-config libxml2-dev libgtest-dev locales"
for extra in "$@"; do
    case $extra in
    ci) packages="$packages clang clang-format clang-tidy libclang-rt-14-dev" ;;
    packages) packages="$packages dpkg-dev file" ;;
    coverage) packages="$packages gcovr" ;;
    bench) packages="$packages libbenchmark-dev libpugixml-dev" ;;
    docs) packages="$packages doxygen" ;;
    *)
        echo "setup: unknown argument '$extra' (known: ci, packages, coverage, bench, docs)" >&2
        exit 2
        ;;
    esac
done

stop() {
    echo "setup: $1" >&2
    exit 1
}

# Prints those of $packages that are not installed.
list_missing() {
    for package in $packages; do
        state=$(dpkg-query -W -f '${db:Status-Status} ' "$package" 2>/dev/null) || state=
        case " $state" in
        *" installed "*) ;;
        *) printf ' %s' "$package" ;;
        esac
    done
}

for tool in dpkg-query apt-get; do
    command -v "$tool" >/dev/null 2>&1 ||
        stop "this is not a Debian system ($tool is missing). Install the equivalents of: $packages;
       then build with 'cmake --preset release && cmake --build --preset release'."
done

missing=$(list_missing)
[ -n "$missing" ] || exit 0
echo "setup: missing Debian packages:$missing"

# Without a terminal there is nobody to type a password.
sudo=sudo
[ -t 0 ] || sudo="sudo -n"

if [ "$(id -u)" -eq 0 ]; then
    as_root=
elif ! command -v sudo >/dev/null 2>&1; then
    stop "cannot install them: not root, and there is no sudo. Have an administrator run
       apt-get install$missing"
elif $sudo true; then
    as_root=$sudo
else
    stop "cannot install them: not root, and sudo refused (it may want a password and have no
       terminal to ask on). Run tools/setup.sh in a terminal, or have an administrator run
       apt-get install$missing"
fi

log=$(mktemp)
trap 'rm -f "$log"' EXIT

run_apt_get() {
    $as_root env DEBIAN_FRONTEND=noninteractive apt-get -qq \
        -o Acquire::Retries=3 -o DPkg::Lock::Timeout=120 -o Dpkg::Use-Pty=0 \
        "$@" </dev/null >>"$log" 2>&1
}

install_missing() {
    run_apt_get update && run_apt_get install -y --no-install-recommends $missing
}

# Mirrors fail now and then; a second try a little later mostly succeeds.
attempts=3
attempt=1
until install_missing; do
    if [ "$attempt" -ge "$attempts" ]; then
        tail -n 20 "$log" >&2
        stop "apt-get failed $attempts times; its last lines are above."
    fi
    echo "setup: apt-get failed, trying again (attempt $attempt of $attempts)"
    attempt=$((attempt + 1))
    sleep 5
done

missing=$(list_missing)
[ -z "$missing" ] || stop "apt-get reported success, but these are still missing:$missing"
echo "setup: done"
