# Sourced by ./run and ./test: makes sure that what the build needs is on the machine.
# Needs: bash. Defines: say, setup, configure_and_build.

say() { printf '\n== %s\n' "$*"; }

# Debian's names of what is needed to build, to run, and to test.
zento_packages=(
  g++ cmake ninja-build pkg-config lld ccache
  qt6-base-dev qt6-qpa-plugins libgl-dev
  libasio-dev libcli11-dev nlohmann-json3-dev libcanberra-dev libcurl4-openssl-dev
  libgtest-dev libgmock-dev libbenchmark-dev libgsl-dev libfftw3-dev
  fonts-vlgothic fonts-dejavu-core
)

zento_missing() {
  local package
  for package in "${zento_packages[@]}"; do
    # Virtual packages (libgl-dev) are answered by whichever package provides them.
    dpkg-query -W -f='${Status} ${Provides}\n' "$package" 2>/dev/null | grep -q '^install ok installed' && continue
    echo "$package"
  done
}

setup() {
  if ! command -v dpkg-query >/dev/null; then
    say "This machine does not use Debian's packages: make sure that the equivalents of these are there"
    printf '   %s\n' "${zento_packages[*]}"
    return 0
  fi
  local missing
  mapfile -t missing < <(zento_missing)
  [ ${#missing[@]} -eq 0 ] && return 0

  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    if command -v sudo >/dev/null && sudo -n true 2>/dev/null || { [ -t 0 ] && command -v sudo >/dev/null; }; then
      as_root=(sudo)
    else
      say "These packages are missing, and this user may not install them:"
      printf '   %s\n' "${missing[*]}"
      printf '   Ask for: apt-get install %s\n' "${missing[*]}"
      return 1
    fi
  fi
  say "Installing: ${missing[*]}"
  "${as_root[@]}" apt-get update -q >/dev/null || say "The package lists could not be refreshed; going on with the ones at hand"
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "${missing[@]}"
}

# configure_and_build PRESET [CMAKE-OPTION...]
configure_and_build() {
  local preset=$1
  shift
  say "Configuring ($preset)"
  cmake --preset "$preset" "$@" >"${TMPDIR:-/tmp}/zento-configure-$$.log" 2>&1 || {
    cat "${TMPDIR:-/tmp}/zento-configure-$$.log"
    return 1
  }
  rm -f "${TMPDIR:-/tmp}/zento-configure-$$.log"
  say "Building ($preset); only what changed is compiled"
  cmake --build "build/$preset" -j "$(nproc)"
}
