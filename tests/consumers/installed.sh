#!/usr/bin/env bash
# installed.sh <build folder>: uses the shared library of a build from where it is installed, from the
# build folder, and as part of another project, there static; GCC and Clang, C++17 and C++20.
source "$(dirname "${BASH_SOURCE[0]}")/clients.sh"
source_folder=$(cd "$consumers/../.." && pwd)
build_folder=$(cd "$1" && pwd)

# installed_as <folder> <build folder>: installs into another folder and moves the result, which must
# not remember where it was or came from.
installed_as() {
    quietly cmake --install "$2" --prefix "$work/first"
    if grep -rlF -e "$work/first" -e "$source_folder" -e "$2" "$work/first/include" "$work/first/"lib*; then
        echo "failed: these files of an installation name the folder of a build" >&2
        return 1
    fi
    mv "$work/first" "$1"
    PKG_CONFIG_PATH=$(dirname "$(find "$1" -name kaxml.pc)")
    LD_LIBRARY_PATH=$(dirname "$PKG_CONFIG_PATH")
    export PKG_CONFIG_PATH LD_LIBRARY_PATH
}

installed_as "$work/shared" "$build_folder"
for compiler in g++ clang++; do
    for standard in 17 20; do
        client_with_cmake "$compiler" "$standard" -DCMAKE_PREFIX_PATH="$work/shared"
        client_with_pkg_config "$compiler" "$standard"
    done
done
client_with_cmake g++ 17 -Dkaxml_DIR="$build_folder"

# embedded <build folder> <options...>: configures a project that contains this one.
embedded() {
    quietly cmake -S "$work/embedded" -B "$@" -DKAXML_SOURCE="$source_folder"
}

if command -v ccache >/dev/null; then
    export CMAKE_CXX_COMPILER_LAUNCHER=ccache
fi
echo "part of another project: shared"
embedded "$work/embedded-shared"
echo "part of another project: static, installed by it"
embedded "$work/embedded-static" -DBUILD_SHARED_LIBS=OFF -DKAXML_INSTALL=ON -DCMAKE_CXX_COMPILER=clang++
quietly cmake --build "$work/embedded-static"
quietly "$work/embedded-static/client"
installed_as "$work/static" "$work/embedded-static"
client_with_cmake g++ 17 -DCMAKE_PREFIX_PATH="$work/static"
client_with_cmake clang++ 20 -DCMAKE_PREFIX_PATH="$work/static"
client_with_pkg_config g++ 20 --static
client_with_pkg_config clang++ 17 --static
