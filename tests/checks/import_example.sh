#!/usr/bin/env bash
# The import example as a user meets it: what it prints, its exit status, and one sentence for every way to go wrong.
# Usage: import_example.sh PROGRAM TOP_OF_TREE [LAUNCHER]
set -uo pipefail
program=(${3+"$3"} "$1") folder=$2/examples/import
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
bad=0

# expect STATUS LAST_LINE ARGUMENT...: the exit status, the last line on standard output, and standard error silent
# for status 0, and with text for 1.
expect() {
  local status=$1 last=$2
  shift 2
  "${program[@]}" "$@" >"$work/out" 2>"$work/err" </dev/null
  local got=$?
  if [ $got != "$status" ] || [ "$(tail -n 1 "$work/out")" != "$last" ] ||
    { [ "$status" = 0 ] && [ -s "$work/err" ]; } || { [ "$status" = 1 ] && [ ! -s "$work/err" ]; }; then
    echo "FAILED ($got): $*"
    tail -n 3 "$work/out" "$work/err"
    bad=1
  fi
}
# says TEXT: the last run's standard error or output holds it.
says() { grep -qF -- "$1" "$work/err" "$work/out" || { echo "missing: $1"; cat "$work/err"; bad=1; }; }

expect 0 'rows=375 ok=353 error=14 skip=8' "$folder/ledger.csv" --columns "$folder/ledger.columns"
# The same bytes on every host.
cmp "$work/out" "$2/tests/data/ledger_import.txt" || bad=1
says '   4         1  R.06/04/01  消耗品費    1,400,000                       有限会社青空文具  コピー用紙, 封筒'
says 'line 249: 241,25/11/2024,"現金預金及び当座借越残高",9999999999999,'
says '    借方科目:文字列の長さが範囲を超えています。'
says '    １行に指定されている項目数が異なっています。'
says '売上高                       13,437,568   △13,437,568'

printf 'code string 3 check\nn long 4 signdigit # the amount\n\n# nothing else\n' >"$work/columns"
printf 'あ,1\r\n#い\r\n\r\nう,x\nえお,2' >"$work/utf8"
expect 0 'rows=16 ok=0 error=15 skip=1' "$folder/postal.columns" --columns "$work/columns" --utf8 --any-count --delimiter tab
expect 0 'rows=5 ok=3 error=0 skip=2' "$work/utf8" --columns "$work/columns" --utf8
printf 'n long 4 check\n' >"$work/strict"
expect 0 'rows=5 ok=0 error=3 skip=2' "$work/utf8" --columns "$work/strict" --utf8
printf "'a;b';1\n" >"$work/semicolon"
expect 0 'rows=1 ok=1 error=0 skip=0' "$work/semicolon" --columns "$work/columns" --delimiter semicolon --quotes single
: >"$work/empty"
expect 0 'rows=0 ok=0 error=0 skip=0' "$work/empty" --columns "$work/columns"

# A description from an editor of the other system: byte order mark, CR LF, tabs and full-width blanks.
printf '\xef\xbb\xbfcode\tstring\t3\r\nname　string　4　check\r\n' >"$work/foreign"
printf 'か\xe3\x82\x99,b\tc\n\x1b[2J,bc\nあ,abcde\rf\n' >"$work/controls"
expect 0 'rows=3 ok=2 error=1 skip=0' "$work/controls" --columns "$work/foreign" --utf8
says $'   1  か\xe3\x82\x99    b c'
says $'   2   [2   bc'
says 'line 3: あ,abcde f'

if [ -c /dev/full ]; then
  "${program[@]}" "$work/controls" --columns "$work/foreign" --utf8 >/dev/full 2>"$work/err"
  [ $? = 1 ] && [ -s "$work/err" ] || { echo "FAILED: output that was lost counts as written"; bad=1; }
fi

expect 1 '' "$work/none" --columns "$work/columns"
expect 1 '' "$work" --columns "$work/columns"
expect 1 '' "$work" --columns "$work/columns" --utf8
expect 1 '' "$work/utf8" --columns "$work/none"
expect 1 '' "$work/utf8" --columns "$work"
expect 1 '' "$work/utf8" --columns "$work/empty"
expect 1 '' "$work/utf8"
expect 1 '' --columns "$work/columns"
expect 1 '' "$work/utf8" --columns "$work/columns" --quotes triple
for line in 'a' 'a strong 3' 'a string' 'a string x' 'a string 0' 'a string -1' 'a long 3.2' 'a double 3.99' \
  'a long 3 checked' 'a long 3 default=x'; do
  printf '# first\nok string 3\n%s\n' "$line" >"$work/wrong"
  expect 1 '' "$work/utf8" --columns "$work/wrong" --utf8
  says 'line 3:'
done
for i in $(seq 40); do echo "c$i string 1000000"; done >"$work/wrong"
expect 1 '' "$work/utf8" --columns "$work/wrong" --utf8
says 'line 32:'
exit $bad
