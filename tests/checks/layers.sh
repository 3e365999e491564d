#!/usr/bin/env bash
# Reads the includes of the library and holds them against the layers: a folder may include itself and the folders
# listed for it. Usage: layers.sh TOP_OF_TREE
set -euo pipefail
cd "$1"

declare -A may=(
  [platform]=''
  [afx]='platform'
  [core]='platform afx'
  [numeric]='platform afx'
  [text]='platform afx core numeric'
  [calendar]='platform afx core numeric text'
  [files]='platform afx core numeric text calendar'
  [exchange]='platform afx core numeric text calendar files'
  [settings]='platform afx core numeric text calendar files exchange'
  [xml]='platform afx core numeric text calendar files exchange'
  [threads]='platform afx core'
  [values]='platform afx core calendar numeric text'
)
# Known exceptions, "file-prefix folder" a line: compound storage and the compound-file key call interfaces through
# the wrapper of xml/.
exceptions='
qorgen/files/storage xml
qorgen/settings/compound xml
'

bad=0
while IFS=: read -r file line text; do
  from=${file#qorgen/}
  [[ $from == */* ]] || continue # the umbrella header sees everything
  from=${from%%/*}
  to=${text#*\"qorgen/}
  to=${to%%/*}
  [[ $from == "$to" ]] && continue
  [[ " ${may[$from]-} " == *" $to "* ]] && continue
  while read -r prefix folder; do
    [[ -n $prefix && $file == "$prefix"* && $to == "$folder" ]] && continue 2
  done <<<"$exceptions"
  echo "$file:$line: $from/ may not include $to/ ($text)"
  bad=1
done < <(grep -rnE --include='*.h' --include='*.cpp' '^[[:space:]]*#[[:space:]]*include[[:space:]]+"qorgen/' qorgen)

# A host's name and its headers stand in qorgen/platform only.
if grep -rnE --include='*.h' --include='*.cpp' '\b_WIN32|__linux__|__MINGW|<windows\.h>|qorgen/platform/(linux|windows)/' \
    qorgen examples tests bench fuzz | grep -vE '^qorgen/platform/|^[^:]*_linux_test\.cpp:|^tests/.*_windows_test\.cpp:'; then
  echo "the lines above name a host outside qorgen/platform"
  bad=1
fi
exit $bad
