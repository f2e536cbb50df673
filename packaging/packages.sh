# Sourced by the scripts at the root: installs the Debian packages that are missing.

# need_packages PACKAGE...
# Installs those that are not there, with sudo where the user is not root. One line says what is
# wrong where it can't.
need_packages() {
  local missing=() package
  command -v dpkg-query >/dev/null || {
    echo "This script installs Debian packages, which this system does not have; needed: $*" >&2
    return 1
  }
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' ||
      missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0

  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || {
      echo "Missing packages, and no sudo to install them: ${missing[*]}" >&2
      return 1
    }
    as_root=(sudo)
  fi
  echo "Installing ${missing[*]}"
  "${as_root[@]}" apt-get update -qq &&
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
      apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null || {
    echo "Could not install ${missing[*]}" >&2
    return 1
  }
}

build_packages=(cmake g++ ninja-build qt6-base-dev qt6-serialport-dev)
bench_packages=(libbenchmark-dev libxcb-damage0-dev)
test_packages=(libgtest-dev libgmock-dev "${bench_packages[@]}" fonts-dejavu-core clang-format
  desktop-file-utils appstream groff)
