# What ./run, ./test and .ci/run share: saying each step, installing what is missing, building a preset.
# Sourced, not run.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

step() { printf '== %s\n' "$*"; }

fail() {
  printf '%s\n' "$*" >&2
  exit 1
}

as_root() {
  if [ "$(id -u)" = 0 ]; then
    "$@"
  elif command -v sudo > /dev/null; then
    sudo "$@"
  else
    fail "This needs root: run as root or install sudo. Wanted: $*"
  fi
}

# need PACKAGE...: installs the Debian packages that are not there yet.
need() {
  local package missing=()
  for package in "$@"; do
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2> /dev/null)" = installed ] || missing+=("$package")
  done
  [ ${#missing[@]} -gt 0 ] || return 0
  command -v apt-get > /dev/null || fail "Please install: ${missing[*]} (no apt-get on this system)"
  step "Installing ${missing[*]}"
  as_root env DEBIAN_FRONTEND=noninteractive apt-get update -qq
  as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" > /dev/null
}

# need_source PACKAGE: unpacks a source package of the distribution into build/sources/PACKAGE unless it is there. apt looks for
# it where the binary packages come from, with lists of its own, so that the system's stay as they are.
need_source() {
  local package=$1 folder=build/sources/$1 own list
  [ ! -d "$folder" ] || return 0
  command -v apt-get > /dev/null || fail "Please unpack the sources of $package into $folder (no apt-get on this system)"
  step "Fetching the sources of $package"
  own=$(mktemp -d)
  mkdir -p "$own"/{sources,lists/partial,cache/archives/partial,unpacked} build/sources
  for list in /etc/apt/sources.list /etc/apt/sources.list.d/debian.list /etc/apt/sources.list.d/*.sources; do
    [ ! -f "$list" ] || sed -E 's/^deb /deb-src /; s/^Types:.*/Types: deb-src/' "$list" > "$own/sources/$(basename "$list")"
  done
  local apt=(apt-get -qq -o Dir::Etc::SourceList=/dev/null -o Dir::Etc::SourceParts="$own/sources"
             -o Dir::State::Lists="$own/lists" -o Dir::Cache="$own/cache" -o APT::Sandbox::User=root)
  quietly "${apt[@]}" update
  (cd "$own/unpacked" && "${apt[@]}" source --download-only "$package" > /dev/null)
  tar -xf "$own/unpacked/$package"_*.orig.tar.* -C "$own/unpacked"
  mv "$own/unpacked/$package"-*/ "$folder"
  rm -rf "$own"
}

build_packages=(g++ cmake ninja-build ccache libasio-dev libcli11-dev nlohmann-json3-dev libexpected-dev
                libutf8proc-dev pkg-config libwxgtk3.2-dev libgtk-3-dev wx3.2-i18n)

# build PRESET [TARGET...]: configures when needed, then builds.
build() {
  local preset=$1
  shift
  step "Building ($preset)"
  export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER-ccache}
  [ "build/$preset/build.ninja" -nt CMakePresets.json ] || quietly cmake --preset "$preset"
  quietly cmake --build --preset "$preset" ${1:+--target "$@"}
}

# quietly COMMAND...: shows the output only when the command fails.
quietly() {
  local log
  log=$(mktemp)
  if ! "$@" > "$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    fail "Failed: $*"
  fi
  rm -f "$log"
}
