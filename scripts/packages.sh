# Sourced: lists the Debian packages for each purpose, and installs them.
# shellcheck shell=bash

declare -A packages=(
  [build]="cmake ninja-build g++ libsqlite3-dev libsodium-dev libcli11-dev nlohmann-json3-dev"
  [run]="sqlite3"
  [bench]="libbenchmark-dev"
  [test]="libgtest-dev libgmock-dev sqlite3 jq gpsbabel libxml2-utils ffmpeg systemd python3-nacl chromium python3"
  [ppc]="g++-powerpc-linux-gnu qemu-user googletest tcl dpkg-dev make autoconf automake libtool"
  [package]="dpkg-dev"
  [count]="valgrind gcc strace"
  [clang]="clang libclang-rt-14-dev libbenchmark-dev"
  [lint]="clang-format clang-tidy shellcheck git"
)

# need_packages SET...: installs the missing packages of these sets, with sudo unless root.
need_packages() {
  local name installed wanted=() missing=() sudo=()
  for name in "$@"; do
    # shellcheck disable=SC2206  # one word, one package
    wanted+=(${packages[$name]})
  done
  installed=$(dpkg-query -W -f '${db:Status-Status} ${Package}\n' "${wanted[@]}" 2>/dev/null || true)
  for name in "${wanted[@]}"; do
    grep -qxF "installed $name" <<<"$installed" || missing+=("$name")
  done
  [ ${#missing[@]} -ne 0 ] || return 0

  echo "These Debian packages are needed and missing: ${missing[*]}"
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
      echo "Neither root nor sudo: please let root run: apt-get install ${missing[*]}" >&2
      exit 1
    fi
    sudo -v  # asks for the password now, while there is a terminal
    sudo=(sudo)
  fi
  local apt=("${sudo[@]}" env DEBIAN_FRONTEND=noninteractive
    apt-get -qq -o Dpkg::Use-Pty=0 -o DPkg::Lock::Timeout=300)
  quietly "Updating the package lists" "${apt[@]}" update
  quietly "Installing them" "${apt[@]}" install --yes --no-install-recommends "${missing[@]}"
}
