# Shared by the commands at the root: what the build needs from Debian, and how it is configured.
# Sourced, never run; expects $root to be the top of the tree.

# What each purpose needs: a Debian package a word.
packages_build='g++ cmake ninja-build pkg-config libglib2.0-dev libgd-dev libssl-dev'
packages_test='googletest clang-format-14 binutils'
# For Windows: the cross compiler, the 64-bit Wine alone (no second architecture), and the sources of the Japanese locale.
packages_windows='g++-mingw-w64-x86-64-posix cmake ninja-build wine64 locales'
packages_windows_test='googletest'

# install_missing PURPOSE...: installs the packages of the named purposes that this machine lacks.
install_missing() {
  local purpose list package missing=()
  for purpose in "$@"; do
    list="packages_$purpose"
    for package in ${!list}; do
      dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
    done
  done
  [ ${#missing[@]} -gt 0 ] || return 0
  echo "installing: ${missing[*]}" >&2
  local as_root=()
  [ "$(id -u)" = 0 ] || as_root=(sudo)
  {
    "${as_root[@]}" apt-get update
    DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install -y --no-install-recommends "${missing[@]}"
  } >&2 || {
    echo "could not install: ${missing[*]}" >&2
    return 1
  }
}

# configure_and_build PRESET TARGET [OPTION...]: quiet when all goes well, the whole output when not. The options go to
# CMake; running needs less than testing does.
configure_and_build() {
  local preset=$1 target=$2 log
  shift 2
  mkdir -p "$root/build"
  log=$(mktemp "$root/build/log.XXXXXX")
  echo "building ($preset) ..." >&2
  if ! (cd "$root" && cmake --preset "$preset" "$@" && cmake --build "build/$preset" --target "$target" -j "$(nproc)") \
      >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}
