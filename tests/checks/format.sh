#!/usr/bin/env bash
# Every source and header as clang-format lays it out. Usage: format.sh TOP_OF_TREE
set -euo pipefail
cd "$1"
find qorgen tests examples bench fuzz -name '*.h' -o -name '*.cpp' | sort | xargs clang-format-14 --dry-run -Werror
