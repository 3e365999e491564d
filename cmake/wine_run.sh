#!/usr/bin/env bash
# Runs a Windows program on this machine: Wine without a screen, with the Japanese code page, in a prefix of its own
# under the build folder of the preset `windows`. Usage: wine_run.sh PROGRAM [ARGUMENT...]
set -euo pipefail
home=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)/build/windows/wine
compiler=x86_64-w64-mingw32-g++-posix

export WINEPREFIX=$home/prefix WINEDEBUG=-all WINEARCH=win64
# Wine's server has its folder here. It is found again only where the temporary folder is the same in every call;
# else several servers would work on one prefix.
export TMPDIR=$home
# Neither a browser engine nor a .NET runtime is asked for, and no menu entries are made on the host.
export WINEDLLOVERRIDES='mscoree=;mshtml=;winemenubuilder.exe=d'
unset DISPLAY WAYLAND_DISPLAY

# Wine takes its ANSI code page from the locale of the environment. The one it needs is compiled into a folder of our
# own, so that the machine's list of locales stays as it is.
locales=$home/locale
japanese=(env "LOCPATH=$locales" LANG=ja_JP.UTF-8 LC_ALL=ja_JP.UTF-8)
wine=("${japanese[@]}" /usr/lib/wine/wine64)
server=("${japanese[@]}" /usr/lib/wine/wineserver64)

# The compiler's run-time libraries, and the library beside them.
runtime=$(dirname "$("$compiler" -print-file-name=libstdc++-6.dll)")
threads=$(dirname "$("$compiler" -print-file-name=libwinpthread-1.dll)")
export WINEPATH="Z:$runtime;Z:$threads;Z:$(dirname "$home")/qorgen"
# A packaged program brings its own.
[ -z "${QORGEN_WINE_ALONE-}" ] || unset WINEPATH

mkdir -p "$home"
(
  flock 9
  if [ ! -e "$locales/ja_JP.UTF-8" ]; then
    mkdir -p "$locales"
    localedef -i ja_JP -f UTF-8 "$locales/making.UTF-8" >&2
    mv "$locales/making.UTF-8" "$locales/ja_JP.UTF-8"
  fi
  # One Wine session serves the programs that follow each other, and ends half a minute after the last. Its services
  # are started here and write into a log: they would keep the streams of the program that happened to start them. The
  # first program of a session starts them, and makes the prefix. Wine's server inherits the lock of the session and so
  # holds it as long as it runs.
  exec 8>"$home/session.lock"
  if flock -n 8; then
    [ -e "$WINEPREFIX/ready" ] || rm -rf "$WINEPREFIX"
    {
      mkdir -p "$WINEPREFIX" && "${server[@]}" -p30 9>&- &&
        "${wine[@]}" reg add 'HKCU\Software\Wine' /v Version /d win10 /f 8>&- 9>&-
    } >"$home/session.log" 2>&1 </dev/null || { cat "$home/session.log" >&2; "${server[@]}" -k; exit 1; }
    touch "$WINEPREFIX/ready"
  fi
) 9>"$home/lock"
exec "${wine[@]}" "$@"
