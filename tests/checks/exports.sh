#!/usr/bin/env bash
# The DLL exports the public surface and nothing else: no inner namespace, no instance of the standard library, no
# function of the platform or its glue. Usage: exports.sh DLL
set -euo pipefail
names=$(x86_64-w64-mingw32-objdump -p "$1" |
  awk '/^\[Ordinal\/Name Pointer\] Table/ { on = 1; next } on && NF == 0 { on = 0 } on { print $NF }' |
  x86_64-w64-mingw32-c++filt)
# What inline code of the public headers refers to: the text of an empty CString, the blocks of a CArray.
names=$(grep -vE '^qorgen::afx::(g_empty_text|AllocateElements\(.*)$' <<<"$names")
bad=$(grep -E '^(std::|__gnu|qorgen::[a-z]+::|qorgen_|_w|wmain|DllMain|operator (new|delete))|^(vtable|typeinfo( name)?|VTT) for (std|__gnu|qorgen::[a-z]+)::' <<<"$names" || true)
if [ -n "$bad" ]; then
  echo "exported without being public:"
  echo "$bad"
  exit 1
fi
for name in 'CString::' 'CQorDateUtil::' 'CQorCSVFile::' 'CQorImportManager::' 'CQorOsException::Throw' 'QorFree' \
  'typeinfo for CQorException'; do
  grep -qF -- "$name" <<<"$names" || { echo "not exported: $name"; exit 1; }
done
