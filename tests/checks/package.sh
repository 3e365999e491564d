#!/usr/bin/env bash
# Installs the library and builds a stranger's project against it, by its CMake package and by pkg-config.
# Usage: package.sh BUILD_FOLDER TOP_OF_TREE CXX_COMPILER
set -euo pipefail
build=$1 top=$2 cxx=$3
work=$build/tests/package
rm -rf "$work"
mkdir -p "$work"

cmake --install "$build" --prefix "$work/prefix" >/dev/null
cmake -S "$top/tests/package" -B "$work/stranger" -G Ninja -DCMAKE_PREFIX_PATH="$work/prefix" \
  -DCMAKE_CXX_COMPILER="$cxx" >/dev/null
cmake --build "$work/stranger"
"$work/stranger/stranger"

pc=$(find "$work/prefix" -name qorgen.pc)
flags=$(PKG_CONFIG_PATH=$(dirname "$pc") pkg-config --cflags --libs qorgen)
libdir=$(dirname "$(dirname "$pc")")
# The file names the prefix of the configured install; this one is elsewhere.
flags=$(PKG_CONFIG_PATH=$(dirname "$pc") pkg-config --define-variable=prefix="$work/prefix" --cflags --libs qorgen)
# shellcheck disable=SC2086
"$cxx" "$top/tests/package/stranger.cpp" -o "$work/by_pkg_config" $flags -Wl,-rpath,"$libdir"
"$work/by_pkg_config"
