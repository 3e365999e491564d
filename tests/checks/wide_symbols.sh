#!/usr/bin/env bash
# The C library's wide functions and the wide half of the C++ runtime assume 32-bit units; the library is compiled
# with 16-bit ones and must not reach them. Usage: wide_symbols.sh LIBRARY
set -euo pipefail
found=$(nm -D --undefined-only "$1" | awk '{print $NF}' | sed 's/@.*//' | c++filt |
  grep -E '^(v?f?w(printf|scanf)|v?sw(printf|scanf)|f?(get|put)w(s|c|char)|ungetwc|wcs[a-z0-9_]*|wmem[a-z]*|mbs[a-z]*towc[a-z]*|mbr?towc|wcr?tomb|btowc|isw[a-z]*|tow(upper|lower|ctrans)|wctype|__wcs[a-z0-9_]*|__fgetws_chk)$|wchar_t|basic_[a-z]*<wchar|__isoc99_.*w(printf|scanf)' || true)
if [ -n "$found" ]; then
  echo "the library asks for wide functions of the runtime:"
  echo "$found"
  exit 1
fi
