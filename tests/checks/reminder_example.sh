#!/usr/bin/env bash
# The reminder example as a user meets it: the letter, the values kept for the next one, and one sentence for what goes
# wrong. Usage: reminder_example.sh PROGRAM TOP_OF_TREE [LAUNCHER]
set -uo pipefail
program=(${3+"$3"} "$1")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_DATA_HOME=$work/data HOME=$work
key='KeyVault/CU/qorGen/督促状'
# Wine's common documents outlive a run.
[ -z "${3-}" ] || rm -rf "$(dirname "$1")"/../../wine/prefix/drive_c/users/Public/Documents/"$key"
bad=0

# expect STATUS ARGUMENT...
expect() {
  local status=$1
  shift
  "${program[@]}" "$@" >"$work/said" 2>"$work/err" </dev/null
  local got=$?
  if [ $got != "$status" ] || { [ $got = 0 ] && [ -s "$work/err" ]; } || { [ $got = 1 ] && [ ! -s "$work/err" ]; }; then
    echo "FAILED ($got): $*"
    cat "$work/said" "$work/err"
    bad=1
  fi
}
# has FILE TEXT: the file holds the text, CR LF aside.
has() { tr -d '\r' <"$work/$1" | grep -qF -- "$2" || { echo "missing in $1: $2"; bad=1; }; }

expect 1
expect 1 --output "$work/letter"
has err '--customer is needed for the first reminder'
expect 0 --output "$work/letter" --customer '株式会社青空商事' --amount 1234567 --due 31/10/R06
has letter '株式会社青空商事　御中'
has letter '　　ご請求金額　　金 １，２３４，５６７ 円也'
has letter '　　お支払期日　　令和06年10月31日(木)'
[ "$(head -c 3 "$work/letter" | od -An -tx1)" = ' ef bb bf' ] || { echo 'no byte-order mark'; bad=1; }
grep -qF '$$' "$work/letter" && { echo 'a key was left in'; bad=1; }

# The values are there again, all or one by one, also after a run that failed.
expect 1 --output "$work/none/letter" --amount 5
expect 1 --output "$work/second" --due 31/13/R06
expect 1 --output "$work/second" --amount 1,000
expect 1 --output "$work/second" --template "$work/none"
expect 0 --output "$work/second"
cmp "$work/letter" "$work/second" || bad=1
printf '$$CUSTOMER$$: $$AMOUNT$$ $$DUE$$.\nx' >"$work/template"
expect 0 --output "$work/third" --template "$work/template" --amount 98000
[ "$(tr -d '\r' <"$work/third" | tail -c +4)" = '株式会社青空商事９８，０００令和06年10月31日(木).
x' ] || { cat "$work/third"; bad=1; }
exit $bad
