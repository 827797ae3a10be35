#!/usr/bin/env bash
# Installs the build into a scratch prefix and links the minimal C client against it,
# once through pkg-config and once through find_package.
set -euo pipefail
build=$1 source=$2
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
cmake --install "$build" --prefix "$prefix" > /dev/null
libdir=$(dirname "$(find "$prefix" -name xcontrols.pc)")/..
export PKG_CONFIG_PATH=$libdir/pkgconfig
cc "$source/examples/client/minimal.c" $(pkg-config --cflags --libs xcontrols) -o "$prefix/minimal-pc"
cmake -S "$source/examples/client/cmake" -B "$prefix/client" -DCMAKE_PREFIX_PATH="$prefix" > /dev/null
cmake --build "$prefix/client" > /dev/null
test -x "$prefix/minimal-pc" && test -x "$prefix/client/minimal"
readelf -d "$prefix/minimal-pc" | grep -q 'libxcontrols.so.0'
echo "installed headers, libraries, pkg-config files and the CMake package link a client"
