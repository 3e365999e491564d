#!/usr/bin/env bash
# Packs the library, unpacks the archive elsewhere, builds a stranger's project against it and runs that with nothing
# but what the archive brings. Usage: package_windows.sh BUILD_FOLDER TOP_OF_TREE
set -euo pipefail
build=$1 top=$2
work=$build/tests/package
rm -rf "$work"
mkdir -p "$work"

(cd "$build" && cpack -G ZIP -B "$work" >"$work/cpack.log") || { cat "$work/cpack.log"; exit 1; }
(cd "$work" && cmake -E tar xf qorgen-*.zip)
prefix=$(dirname "$(dirname "$(find "$work"/qorgen-* -name qorGen.dll)")")
for file in bin/qorGen.dll bin/libstdc++-6.dll bin/libgcc_s_seh-1.dll bin/libwinpthread-1.dll lib/libqorGen.dll.a \
  include/qorgen/qorgen.h lib/cmake/qorgen/qorgen-config.cmake; do
  [ -f "$prefix/$file" ] || { echo "not in the package: $file"; exit 1; }
done

cmake -S "$top/tests/package" -B "$work/stranger" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$top/cmake/mingw-w64.cmake" \
  -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_FIND_ROOT_PATH_MODE_PACKAGE=BOTH >/dev/null
cmake --build "$work/stranger"
cp "$work/stranger/stranger.exe" "$prefix/bin/"
QORGEN_WINE_ALONE=1 "$top/cmake/wine_run.sh" "$prefix/bin/stranger.exe"
