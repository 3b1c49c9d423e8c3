#!/usr/bin/env bash
# check.sh PREFIX COMPILER LEVEL BUILD: builds and runs the application against the copy installed
# at PREFIX, with COMPILER in -std=c++LEVEL, in the folder BUILD.
set -euo pipefail

prefix=$1 compiler=$2 level=$3 build=$4
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
warnings=(-Wall -Wextra -Wpedantic -Wshadow -Werror)

rm -rf "$build"
mkdir -p "$build"
cp -r "$here/application" "$build/source"  # nothing of the system's tree is in reach

echo "== find_package, $compiler -std=c++$level"
cmake -S "$build/source" -B "$build/cmake" -G Ninja -DCMAKE_CXX_COMPILER="$compiler" \
    -DCMAKE_CXX_STANDARD="$level" -DCMAKE_PREFIX_PATH="$prefix" \
    -DCMAKE_CXX_FLAGS="${warnings[*]}" >"$build/configure.log" ||
    { cat "$build/configure.log"; exit 1; }
cmake --build "$build/cmake"
(cd "$build" && cmake/application)

echo "== pkg-config, $compiler -std=c++$level"
pc=$(dirname "$(find "$prefix" -name zorvexSDK.pc)")
export PKG_CONFIG_PATH=$pc
pkg-config --exact-version=7.2.0 zorvexSDK
libdir=$(pkg-config --variable=libdir zorvexSDK)
# Word splitting is wanted: pkg-config gives several arguments.
# shellcheck disable=SC2046
"$compiler" "-std=c++$level" "${warnings[@]}" "$build/source/main.cpp" -o "$build/plain" \
    $(pkg-config --cflags --libs zorvexSDK)
(cd "$build" && LD_LIBRARY_PATH="$libdir" ./plain)
readelf -d "$build/plain" | grep -q 'NEEDED.*\[libzorvexSDK\.so\.7\]'

echo "== no header of the XML libraries is reachable"
! printf '#include "zorvex_api/zorvex_api.h"\n' |
    "$compiler" "-std=c++$level" -x c++ -M -I"$prefix/include" - |
    grep -E 'xercesc|xalanc|zlib\.h'

echo "done"
