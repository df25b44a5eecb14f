#!/usr/bin/env bash
# packages.sh <folder>: installs the Debian packages of a folder into the system, uses them and removes
# them. Needs root, or sudo without a password; says so and does nothing when there is neither.
source "$(dirname "${BASH_SOURCE[0]}")/clients.sh"
as_root=()
if [ "$(id -u)" -ne 0 ]; then
    as_root=(sudo -n)
    if ! "${as_root[@]}" true 2>"$work/log"; then
        echo "SKIPPED: the Debian packages were not tried; that needs root, or sudo without a password"
        exit 0
    fi
fi

names=()
for package in "$1"/*.deb; do
    names+=("$(dpkg-deb -f "$package" Package)")
done
installed=$(dpkg-query -W "${names[@]}" 2>/dev/null) || true
if [ -n "$installed" ]; then
    echo "failed: to be removed first, then tried again: $installed" >&2
    exit 1
fi

remove() {
    quietly "${as_root[@]}" dpkg --purge "${names[@]}"
}
trap 'remove || true; rm -rf "$work"' EXIT
quietly "${as_root[@]}" dpkg --install "$1"/*.deb
dpkg-query -W -f '${Package} ${Version} (${Depends})\n' "${names[@]}"
paths=$(dpkg-query -L "${names[@]}" | grep kaxml)
client_with_cmake g++ 17
client_with_pkg_config g++ 20

remove
trap 'rm -rf "$work"' EXIT
for path in $paths; do
    if [ -e "$path" ]; then
        echo "failed: $path is still there" >&2
        exit 1
    fi
done
