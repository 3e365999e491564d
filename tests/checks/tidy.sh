#!/usr/bin/env bash
# clang-tidy over the library's sources, by the configuration at the root. Usage: tidy.sh BUILD_FOLDER [FILE...]
# Takes minutes; not part of the test command.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
build=$1
shift
[ $# -gt 0 ] || mapfile -t files < <(find qorgen -name '*.cpp' ! -path '*/windows/*' | sort)
[ $# -eq 0 ] || files=("$@")
printf '%s\n' "${files[@]}" | xargs -P "$(nproc)" -n 4 clang-tidy-14 -p "$build" --quiet 2>/dev/null
