#!/usr/bin/env bash
# Every program that links the library pays at its start for what the library is linked to: the compiler's run-time
# libraries and GLib. Others are loaded at their first use (qorgen/platform/linux/optional_library.h).
# Usage: linked_libraries.sh LIBRARY
set -euo pipefail
found=$(objdump -p "$1" | awk '$1 == "NEEDED" { print $2 }' |
  grep -vE '^(libglib-2\.0|libstdc\+\+|libgcc_s|libm|libc|ld-linux-x86-64)\.so\.[0-9]+$' || true)
if [ -n "$found" ]; then
  echo "the library is linked to more than a program's start should pay for:"
  echo "$found"
  exit 1
fi
