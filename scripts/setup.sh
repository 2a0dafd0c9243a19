# shellcheck shell=bash
# What ./run and ./test share: the packages, mozjpeg's cjpeg, the builds. Sourced, not run; expects
# to be in the root of the project.

say() { printf '\033[1m==>\033[0m %s\n' "$*"; }
die() {
  printf '%s: %s\n' "${0##*/}" "$*" >&2
  exit 1
}

as_root() {
  if [ "$(id -u)" = 0 ]; then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo "$@"
  else
    die "cannot install packages: neither root nor sudo. Needed: $*"
  fi
}

apt_install() {
  as_root env DEBIAN_FRONTEND=noninteractive \
    apt-get install --yes --quiet --no-install-recommends "$@"
}

# The lists of a fresh machine are empty and those of an old one are stale, so a failure is worth
# one more attempt with new ones.
install_packages() {
  say "Installing $*"
  apt_install "$@" && return
  say "Once more, with new package lists"
  as_root apt-get update --quiet
  apt_install "$@" || die "these packages could not be installed: $*"
}

# missing_packages LIST...
missing_packages() {
  local wanted installed
  wanted=$(sed 's/#.*//' "$@" | xargs -n 1 | sort)
  # shellcheck disable=SC2086 # one argument a word is meant
  installed=$( (dpkg-query --show --showformat='${Package} ${db:Status-Status}\n' $wanted || true) \
    2>/dev/null | awk '$2 == "installed" { print $1 }' | sort -u)
  comm -23 <(echo "$wanted") <(echo "$installed")
}

# ensure_packages LIST...
ensure_packages() {
  command -v apt-get >/dev/null || die "this needs Debian: there is no apt-get"
  local missing
  mapfile -t missing < <(missing_packages "$@")
  [ ${#missing[@]} -eq 0 ] || install_packages "${missing[@]}"
}

# mozjpeg's cjpeg reads JPEG, which the distribution's does not. Debian has no mozjpeg; its sources
# lie in a package of the npm registry, of which nothing is run.
mozjpeg_version=8.0.0
mozjpeg_sha256=2a28f72ac9991a53572e634efa668ab9bdafa4653aa6d771298f2212e49d9467
mozjpeg_folder=build/tools/mozjpeg-$mozjpeg_version

fetch_mozjpeg() {
  command -v npm >/dev/null || install_packages npm
  (cd "$mozjpeg_folder" && npm pack --ignore-scripts --silent "mozjpeg@$mozjpeg_version") &&
    echo "$mozjpeg_sha256  $mozjpeg_folder/mozjpeg-$mozjpeg_version.tgz" | sha256sum --check --quiet
}

compile_mozjpeg() (
  cd "$mozjpeg_folder" &&
    tar -xzf "mozjpeg-$mozjpeg_version.tgz" &&
    tar -xzf package/vendor/source/mozjpeg.tar.gz &&
    mkdir -p objects && cd objects &&
    ../mozjpeg/configure --disable-shared --enable-static --disable-dependency-tracking &&
    make -j"$(nproc)" -C simd && make -j"$(nproc)" cjpeg && strip cjpeg &&
    cp ../mozjpeg/LICENSE.md ../LICENSE.mozjpeg.md &&
    cp ../mozjpeg/README.ijg ../README.mozjpeg.ijg &&
    mv cjpeg ../cjpeg
)

ensure_mozjpeg() {
  [ -x "$mozjpeg_folder/cjpeg" ] && return
  mkdir -p "$mozjpeg_folder"
  say "Fetching the sources of mozjpeg $mozjpeg_version"
  if ! fetch_mozjpeg; then
    say "mozjpeg could not be fetched: JPEG screenshots will be scaled down by the fallback instead"
    return
  fi
  say "Building mozjpeg's cjpeg (half a minute)"
  compile_mozjpeg >"$mozjpeg_folder/build.log" 2>&1 || {
    tail -n 20 "$mozjpeg_folder/build.log" >&2
    die "mozjpeg does not build; all of its output is in $mozjpeg_folder/build.log"
  }
}

# configure PRESET [OPTION...]
# Presets that have changed, the compiler perhaps, count for a folder of before, too.
configure() {
  local preset=$1 fresh=()
  shift
  [ CMakePresets.json -ot "build/$preset/CMakeCache.txt" ] || fresh=(--fresh)
  cmake "${fresh[@]}" --preset "$preset" "$@" >"build/$preset.configure.log" 2>&1 || {
    cat "build/$preset.configure.log" >&2
    die "cannot configure the build"
  }
}

# build PRESET TARGET...
# Its progress is for a person who watches.
build() {
  local preset=$1 quiet=()
  shift
  [ -t 1 ] || quiet=(--quiet)
  say "Building $preset"
  ninja "${quiet[@]}" -C "build/$preset" "$@"
}

# set_up LIST...: the packages of these lists, and mozjpeg.
set_up() {
  mkdir -p build
  ensure_packages "$@"
  ensure_mozjpeg
}
