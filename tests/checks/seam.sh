#!/usr/bin/env bash
# Holds the library's objects against the headers of the platform: what nobody needs is neither declared nor built, what
# is declared is there, and nothing is there twice. Usage: seam.sh LIST_OF_OBJECTS TOP_OF_TREE
#
# LIST_OF_OBJECTS is a file, an object of the library a line. What carries QORGEN_API is the users' and counts as called.
set -euo pipefail
list=$1
top=$2
# A class that only tests make, on purpose.
test_hooks='TestClock'
# What stands beside the form that is called (MoveFileW, CreateDirectoryW), and the modes of the shared place, which tests
# ask for and set.
families='^(MoveFileExW|RemoveDirectoryW|qorgen::platform::(SetSharedPlace|SharedFileMode|SharedFolderMode))$'

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
bad=0
report() { # report TITLE FILE: fails when FILE has lines
  [ -s "$2" ] || return 0
  echo "$1:"
  sed 's/^/  /' "$2"
  bad=1
}

# "object kind name" of each function or variable with external linkage: U asked for, H here and hidden, P here and public,
# W here and in any other object that includes its header.
xargs -a "$list" readelf -sW | awk '
  /^File: / { object = $2 }
  $5 != "GLOBAL" && $5 != "WEAK" { next }
  $7 == "UND" { print object, "U", $8; next }
  $4 != "FUNC" && $4 != "OBJECT" { next }
  { print object, $5 == "WEAK" ? "W" : ($6 == "DEFAULT" ? "P" : "H"), $8 }' >"$work/mangled"
c++filt <"$work/mangled" >"$work/symbols"

# Members of a class have external linkage whatever they are for: a class counts as needed when another object speaks of it.
awk -v hooks="$test_hooks" -v families="$families" '
  { object = $1; kind = $2; name = $0; sub(/^[^ ]+ [^ ]+ /, "", name) }
  kind == "U" { asked[name] = 1; words = name; gsub(/[^A-Za-z0-9_]+/, " ", words)
                count = split(words, word, " ")
                for (i = 1; i <= count; ++i) if (!(word[i] in first)) first[word[i]] = object
                                             else if (first[word[i]] != object) spread[word[i]] = 1 }
  kind == "H" && object ~ /\/platform\/(linux|common)\// { mine[name] = object }
  END {
    for (name in mine) {
      if (name in asked || name ~ /^(vtable|typeinfo|typeinfo name|VTT) for /) continue
      bare = name
      sub(/\(.*/, "", bare)
      count = split(bare, part, "::")
      class = count > 1 ? part[count - 1] : ""
      if (class == hooks || bare ~ families) continue
      if (class ~ /^[A-Z]/ && class in first && (first[class] != mine[name] || class in spread)) continue
      print mine[name] ": " name
    }
  }' "$work/symbols" | sed 's|^.*/platform/|platform/|' | sort >"$work/uncalled"
report 'no other object refers to these, and users do not get them' "$work/uncalled"

awk '
  $2 == "U" { next }
  $2 == "W" { weak[$3] = $1; next }
  $3 in strong { print $3 " : " strong[$3] ", " $1 }
  { strong[$3] = $1 }
  END { for (name in strong) if (name in weak) print name " : " strong[name] ", and inline in " weak[name] }
' "$work/mangled" | c++filt >"$work/doubled"
report 'these have two definitions' "$work/doubled"

# What the headers of the seam declare on this host, a declaration a line and a name a declaration.
for header in "$top"/qorgen/platform/*.h; do
  awk '
    { sub(/\/\/.*/, "") }
    /^#if/ { ++depth; if ($0 ~ /defined\(_WIN32\)/) { host = depth; skip = $0 !~ /!defined/ } }
    /^#else/ && depth == host { skip = !skip }
    /^#endif/ { if (depth == host) { host = 0; skip = 0 } --depth }
    /^#/ || skip { next }
    { text = text " " $0 }
    END {
      gsub(/extern "C"|namespace [A-Za-z0-9_:]+ \{/, ";", text)
      count = split(text, declaration, /[;{}]/)
      for (i = 1; i <= count; ++i) {
        one = declaration[i]
        if (one !~ /^[ ]*(QORGEN_API |\[\[[a-z]+\]\] )*[A-Za-z_][A-Za-z0-9_:]*[ *&]+([A-Za-z_0-9]+[ *&]+)*[A-Za-z_0-9]+\(.*\)( noexcept)?[ ]*$/) continue
        if (one ~ /inline |constexpr |static_assert|typedef |operator|=|return /) continue
        sub(/\(.*/, "", one)
        sub(/.*[ *&]/, "", one)
        print one
      }
    }' "$header"
done | sort -u >"$work/declared"
grep -v ' U ' "$work/symbols" | grep -oE '[A-Za-z_0-9]+\(' | tr -d '(' | sort -u >"$work/defined"
comm -23 "$work/declared" "$work/defined" >"$work/missing"
report 'declared in a header of the platform and defined nowhere' "$work/missing"

# Constants: each is spoken of outside its header, unless the header is the users' own vocabulary.
own='automation|message_box|version|gdi|types'
(cd "$top" && find qorgen examples -name '*.h' -o -name '*.cpp') | (cd "$top" && xargs awk '
  FNR == 1 { ++file }
  { sub(/\/\/.*/, "") }
  FILENAME ~ /^qorgen\/platform\/[a-z_]*\.h$/ && /^ *inline constexpr [A-Za-z]+ [A-Z][A-Z0-9_a-z]* =/ { home[$4] = FILENAME }
  { gsub(/"([^"\\]|\\.)*"/, ""); count = split($0, word, /[^A-Za-z0-9_]+/)
    for (i = 1; i <= count; ++i) if (!(word[i] in seen)) seen[word[i]] = file
                                 else if (seen[word[i]] != file) spread[word[i]] = 1 }
  END { for (name in home) if (!(name in spread)) print home[name] ": " name }') |
  grep -vE "^qorgen/platform/($own)\.h:" | sort >"$work/constants" || true
report 'constants that nothing uses' "$work/constants"
exit $bad
