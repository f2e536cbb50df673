# Sourced by the scripts of this tree from its root; `script` is the path of the one that runs. The
# comment at a script's head is what its --help tells.

# fail WORD...: ends the script with one line that says what is wrong.
fail() {
  echo "${script##*/}: $*" >&2
  exit 1
}

# misused WORD...: the same where it was called wrongly.
misused() {
  echo "${script##*/}: $*; see --help" >&2
  exit 2
}

# need_packages PACKAGE...: installs those that are not there, with sudo where the user is not root.
need_packages() {
  local missing=() package as_root=() log
  command -v dpkg-query >/dev/null ||
    fail "installs Debian packages, which this system does not have; needed: $*"
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' ||
      missing+=("$package")
  done
  [ ${#missing[@]} -gt 0 ] || return 0

  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || fail "no sudo to install what is missing: ${missing[*]}"
    as_root=(sudo)
  fi
  echo "Installing ${missing[*]}"
  # A source of packages that cannot be reached matters only if something is missing for it.
  log=$({
    "${as_root[@]}" apt-get update -qq --error-on=any
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
      apt-get install -y -qq --no-install-recommends "${missing[@]}"
  } 2>&1 >/dev/null) ||
    fail "could not install ${missing[*]}: $(grep -m1 '^E: ' <<<"$log" || tail -n 1 <<<"$log")"
}

# configure PRESET: configures the build in its folder, or in $BUILD_DIR. Sets `build` to that.
configure() {
  local home fresh=()
  build=$(realpath -m -- "${BUILD_DIR:-build/$1}")
  { mkdir -p "$build" && [ -w "$build" ]; } 2>/dev/null ||
    fail "$build cannot be written to: name a folder of your own in BUILD_DIR"
  # What was configured before the tree was moved here is of no use.
  home=$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' "$build/CMakeCache.txt" 2>/dev/null || true)
  [ -z "$home" ] || [ "$home" = "$PWD" ] || fresh=(--fresh)
  cmake --preset "$1" -B "$build" "${fresh[@]}" >/dev/null
}

build_packages=(cmake g++ ninja-build qt6-base-dev qt6-serialport-dev)
bench_packages=(libbenchmark-dev libxcb-damage0-dev)
test_packages=(libgtest-dev libgmock-dev "${bench_packages[@]}" fonts-dejavu-core clang-format
  desktop-file-utils appstream groff socat)

# run_tests FOLDER [OPTION...]: the tests of a build, several at once for each core: the long ones wait.
run_tests() {
  ctest --test-dir "$1" --output-on-failure -j "$((4 * $(nproc)))" "${@:2}"
}

for argument in "$@"; do
  if [ "$argument" = --help ] || [ "$argument" = -h ]; then
    sed -n '2,/^[^#]/ s/^# \{0,1\}//p' "$script"
    exit
  fi
done
unset argument
