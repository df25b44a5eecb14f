#!/usr/bin/env bash
# interface.sh <build folder> [--update]: compares what the shared library of a Release build offers with
# the lists in tests/interface, or replaces the lists. docs/binary-interface.md says what may change.
#
#   files.txt    what is installed, by component
#   symbols.txt  what the library exports
#   sizes.txt    bytes of each exported class, and of its table of virtual functions
set -euo pipefail
export LC_ALL=C
lists=$(dirname "${BASH_SOURCE[0]}")/../tests/interface
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

for component in runtime development; do
    cmake --install "$1" --component "$component" --prefix "$folder/$component" >/dev/null
    (cd "$folder/$component" && find . -type f -printf "$component %P\n" -o -type l -printf "$component %P -> %l\n")
done | sed "s,lib/$(g++ -print-multiarch)/,lib/," | sort >"$folder/files.txt"

# Prints the size and the name of each exported symbol.
library=$(find "$folder/runtime" -name 'libkaxml.so.*' -type f)
exported() {
    readelf -W --dyn-syms "$library" |
        awk '$7 ~ /^[0-9]+$/ { sub(/@.*/, "", $8); print $3, $8 }' | c++filt
}
exported | cut -d' ' -f2- | sort -u >"$folder/symbols.txt"

{
    echo '#include <cstdio>'
    echo '#include <kaxml/kaxml.h>'
    echo 'int main() {'
    sed -n 's/^\(KAXML::[A-Za-z_]*\)::~.*/    std::printf("%zu \1\\n", sizeof(\1));/p' "$folder/symbols.txt" | sort -u
    echo '}'
} >"$folder/sizes.cpp"
"${CXX:-g++}" -std=c++17 -I"$folder/development/include" "$folder/sizes.cpp" -o "$folder/sizes"
{ "$folder/sizes" && exported | grep ' vtable for '; } | sort -k2 >"$folder/sizes.txt"

if [ "${2:-}" = --update ]; then
    exec cp "$folder"/{files,symbols,sizes}.txt "$lists"
fi
changed=0
for list in files symbols sizes; do
    diff -u --label "tests/interface/$list.txt" --label "$1" "$lists/$list.txt" "$folder/$list.txt" || changed=1
done
[ "$changed" -eq 0 ] || {
    echo "The library offers something else than the lists say ('-': only in the list, '+': only in the build)."
    echo "If docs/binary-interface.md allows the change, 'make abi-update' brings the lists up to date."
    exit 1
} >&2
