#!/usr/bin/env bash
# The import example as a user meets it: what it prints, its exit status, and one sentence for every way to go wrong.
# Usage: import_example.sh PROGRAM TOP_OF_TREE [LAUNCHER]
set -uo pipefail
program=(${3+"$3"} "$1") folder=$2/examples/import
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
bad=0
[ -f "$1" ] || { echo "no program: $1"; exit 1; }

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

# ---- what it writes ----

mkdir "$work/temporary"
export TMPDIR=$work/temporary

ledger=("$folder/ledger.csv" --columns "$folder/ledger.columns")
again=("$work/out.csv" --columns "$folder/ledger.columns")
same() { cmp "$1" "$2" || { echo "FAILED: $1 and $2 differ"; bad=1; }; }
gone() { [ ! -e "$1" ] || { echo "FAILED: $1 was left behind"; bad=1; }; }

# A second round gives the same file, and the same records in columns of fixed width.
expect 0 'rows=375 ok=353 error=14 skip=8' "${ledger[@]}" --export "$work/out.csv"
says "written=353 file=$work/out.csv"
expect 0 'rows=353 ok=353 error=0 skip=0' "${again[@]}" --export "$work/again.csv"
same "$work/out.csv" "$work/again.csv"
expect 0 'rows=375 ok=353 error=14 skip=8' "${ledger[@]}" --fixed "$work/first.txt"
expect 0 'rows=353 ok=353 error=0 skip=0' "${again[@]}" --fixed "$work/second.txt"
same "$work/first.txt" "$work/second.txt"
printf '1,01/04/2024,"消耗品費",1400000,"",,"有限会社青空文具","コピー用紙, 封筒",,no\r\n' >"$work/line"
iconv -f CP932 -t UTF-8 "$work/out.csv" | head -n 1 | same "$work/line" -
[ "$(grep -c $'\r$' "$work/first.txt")" = 353 ] || { echo 'FAILED: lines of fixed width'; bad=1; }
iconv -f CP932 -t UTF-8 "$work/first.txt" | grep -c '^00000720240406消耗品費      0000000360000.00          ' >/dev/null ||
  { echo 'FAILED: columns of fixed width'; bad=1; }
# The same through UTF-8, and through other delimiters and quotes, which stand behind --export.
expect 0 'rows=375 ok=353 error=14 skip=8' "${ledger[@]}" --export "$work/ol.csv" --ol
iconv -f CP932 -t UTF-8 "$work/out.csv" | same "$work/ol.csv" -
expect 0 'rows=353 ok=353 error=0 skip=0' "${again[@]}" --export "$work/other.csv" --delimiter semicolon --quotes single
expect 0 'rows=353 ok=353 error=0 skip=0' "$work/other.csv" --columns "$folder/ledger.columns" --delimiter semicolon \
  --quotes single --export "$work/again.csv" --delimiter comma --quotes double
same "$work/out.csv" "$work/again.csv"

# Rows that would not be read again are named and left out; a field that was empty stays empty.
printf 'a string 9 bare\nn long 4\nb bool 3\nd date 10\nx double 9.3 bare\n' >"$work/columns"
printf '"a,b",1,on,1/2/2024,.5\n"#c",1,on,1/2/2024,1\nd,-20,x,x,-1.250\n"e""f",,,,\ng,,,,\n' >"$work/in.csv"
expect 0 'rows=5 ok=5 error=0 skip=0' "$work/in.csv" --columns "$work/columns" --export "$work/out2.csv"
says 'written=2 '
says '    a:引用符なしでは書き出せません。'
printf 'd,"-20","no","",-1.25\r\ng,"","","",\r\n' >"$work/line"
same "$work/line" "$work/out2.csv"
# A tab is white space, too: an empty field in front of a quoted one would be lost in it.
expect 0 'rows=2 ok=2 error=0 skip=0' "$work/out2.csv" --columns "$work/columns" --export "$work/out3.csv" --delimiter tab
says 'written=2 '
printf ',"","","",2\n' >"$work/in.csv"
expect 0 'rows=1 ok=1 error=0 skip=0' "$work/in.csv" --columns "$work/columns" --export "$work/out3.csv" --delimiter tab
says 'written=0 '

# Left out, too, are rows with characters that the target's code page lacks, "é" and the yen sign of Latin 1 among them.
printf 'a,1\r\n\xf0\xa0\xae\xb7,2\r\nb\xc3\xa9,3\r\n\xc2\xa5,4\r\n髙,5\r\n' >"$work/in.csv"
printf 'a string 9\nn long 4 bare\n' >"$work/columns"
expect 0 'rows=5 ok=5 error=0 skip=0' "$work/in.csv" --columns "$work/columns" --utf8 --export "$work/out3.csv"
says 'written=2 '
says '    a:コードページ932にない文字があります。'
expect 0 'rows=5 ok=5 error=0 skip=0' "$work/in.csv" --columns "$work/columns" --utf8 --fixed "$work/out3.csv"
says 'written=2 '
expect 0 'rows=5 ok=5 error=0 skip=0' "$work/in.csv" --columns "$work/columns" --utf8 --export "$work/out3.csv" --ol
says 'written=5 '

# Targets that can't be written: one sentence that says why, the same for both, and nothing half-written.
for target in "$work" "$work/none/out.csv" "$work/out.csv"; do
  expect 1 '' "${again[@]}" --export "$target"
  grep -qF -- "${target##*/}" "$work/err" || { echo "FAILED: $target isn't named"; bad=1; }
  cp "$work/err" "$work/why"
  expect 1 '' "${again[@]}" --fixed "$target"
  same "$work/why" "$work/err"
done
mkdir "$work/taken.$$"
expect 1 '' "${again[@]}" --export "$work/taken.$$" --ol
same "$work/again.csv" "$work/out.csv"
for words in '--ol' '--export x --fixed y' '--export x --delimiter slash' '--export' '--fixed'; do
  expect 1 '' "${again[@]}" $words
done

# What only this host's own shell can bring about.
if [ $# -lt 3 ]; then
  mkdir "$work/locked"
  printf 'earlier\n' >"$work/locked/out.csv"
  chmod 555 "$work/locked"
  chmod 444 "$work/locked/out.csv"
  plain=("${program[@]}")
  # Root without its privileges is held by the permissions, too.
  [ "$(id -u)" != 0 ] || program=(setpriv --bounding-set=-all --inh-caps=-all "$1")
  for option in --export --fixed; do
    expect 1 '' "${again[@]}" $option "$work/locked/new.csv"
    expect 1 '' "${again[@]}" $option "$work/locked/out.csv"
  done
  expect 1 '' "${again[@]}" --export "$work/locked/new.csv" --ol
  # A folder that takes no new file, where an earlier one could be written.
  chmod 644 "$work/locked/out.csv"
  expect 1 '' "${again[@]}" --export "$work/locked/out.csv"
  [ "$(ls "$work/locked")" = out.csv ] && [ "$(cat "$work/locked/out.csv")" = earlier ] || bad=1
  program=("${plain[@]}")

  for option in --export --fixed; do
    "$1" "${ledger[@]}" $option /dev/full >"$work/out" 2>"$work/err"
    [ $? = 1 ] && [ -s "$work/err" ] && [ -c /dev/full ] || { echo "FAILED: a full device"; bad=1; }
    grep -q full "$work/err" || { echo "FAILED: a full device isn't named: $(cat "$work/err")"; bad=1; }
    (ulimit -f 8; trap '' XFSZ; exec "$1" "${ledger[@]}" $option "$work/short.csv") >"$work/out" 2>"$work/err"
    [ $? = 1 ] && grep -q short.csv "$work/err" && ! grep -q part "$work/err" ||
      { echo "FAILED: a limit on the size of files"; bad=1; }
    gone "$work/short.csv"
    # An earlier file stays, also when the program is killed, and is replaced as a whole with its permissions.
    printf 'earlier\n' >"$work/earlier.csv"
    chmod 600 "$work/earlier.csv"
    (ulimit -f 8; trap '' XFSZ; exec "$1" "${ledger[@]}" $option "$work/earlier.csv") >"$work/out" 2>"$work/err"
    [ "$(cat "$work/earlier.csv")" = earlier ] || { echo "FAILED: an earlier file after a failure"; bad=1; }
    gone "$work/earlier.csv.part"
    (ulimit -f 8; exec "$1" "${ledger[@]}" $option "$work/earlier.csv") >"$work/out" 2>"$work/err"
    [ "$(cat "$work/earlier.csv")" = earlier ] && [ "$(stat -c %a "$work/earlier.csv.part")" = 600 ] ||
      { echo "FAILED: an earlier file after a kill"; bad=1; }
    ln -sf earlier.csv "$work/latest.csv"
    expect 0 'rows=375 ok=353 error=14 skip=8' "${ledger[@]}" $option "$work/latest.csv"
    [ -L "$work/latest.csv" ] && [ "$(wc -l <"$work/earlier.csv")" -gt 300 ] && [ "$(stat -c %a "$work/earlier.csv")" = 600 ] ||
      { echo "FAILED: an earlier file that is replaced"; bad=1; }
    rm "$work/earlier.csv.part"
  done

  # Ctrl-C between two rows of a file that is still coming: what was written stays beside the target, whole rows of it.
  printf 'earlier\n' >"$work/part.csv"
  mkfifo "$work/slow"
  "$1" "$work/slow" --columns "$folder/ledger.columns" --export "$work/part.csv" >"$work/out" 2>"$work/err" &
  running=$!
  {
    head -n 100 "$work/out.csv"
    # Until it has written what there is, and waits for more.
    for _ in $(seq 400); do
      [ -e "$work/part.csv.part" ] && grep -q '^State:.S' "/proc/$running/status" && break
      sleep 0.05
    done
    kill -INT $running
    sed -n 101,200p "$work/out.csv"
  } >"$work/slow"
  wait $running
  [ $? = 1 ] && grep -qF "Stopped: $work/part.csv.part holds" "$work/err" && [ "$(cat "$work/part.csv")" = earlier ] || { echo 'FAILED: Ctrl-C'; cat "$work/err"; bad=1; }
  rows=$(wc -l <"$work/part.csv.part")
  [ "$rows" -ge 1 ] && [ "$rows" -le 200 ] || { echo "FAILED: $rows rows before Ctrl-C"; bad=1; }
  head -n "$rows" "$work/out.csv" | same "$work/part.csv.part" -
fi
exit $bad
