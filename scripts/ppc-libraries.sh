#!/bin/bash
# Builds SQLite, libsodium and GoogleTest for the emulated target, from Debian's sources, into .cache/ppc/root, and
# puts the libraries that consist of headers beside them.
# Does nothing if they were built before from the same versions.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/steps.sh

cache=$PWD/.cache/ppc
stamp=$(cat "$0" cmake/toolchain-ppc.cmake cmake/ppc-libraries/CMakeLists.txt | sha256sum
  dpkg-query -W -f '${Package} ${Version}\n' libsqlite3-dev libsodium-dev googletest libcli11-dev nlohmann-json3-dev \
    g++-powerpc-linux-gnu)
if [ "$(cat "$cache/stamp" 2>/dev/null || true)" = "$stamp" ]; then
  exit
fi

# The source packages are listed privately: the system's own package lists stay as they are.
apt_private() {
  apt-get -qq -o Dir::Etc::SourceList="$cache/sources.list" -o Dir::Etc::SourceParts=/dev/null \
    -o Dir::State::Lists="$cache/lists" -o Dir::Cache="$cache/apt" \
    -o Dir::State::Status=/var/lib/dpkg/status -o APT::Sandbox::User="$(id -un)" "$@"
}

fetch_sources() {
  rm -rf "$cache"
  mkdir -p "$cache"/{lists,apt/archives,source}/partial
  # shellcheck disable=SC2016  # the fields are apt-get's
  apt-get indextargets --format 'deb-src $(REPO_URI) $(CODENAME) $(COMPONENT)' \
    'Created-By: Packages' 'Origin: Debian' | sort -ru >"$cache/sources.list"
  apt_private update
  (cd "$cache/source" && apt_private source sqlite3 libsodium)
}

# Joins the many files of Debian's source to the one file that is compiled.
amalgamate_sqlite() {
  cd "$cache"/source/sqlite3-*/
  ./configure --disable-readline
  make sqlite3.c
}

# Debian's source lacks the generated configure script.
build_libsodium() {
  cd "$cache"/source/libsodium-*/
  autoreconf -fi
  ./configure --host=powerpc-linux-gnu --prefix="$cache/root" --disable-shared --disable-dependency-tracking \
    --enable-minimal CFLAGS="-O2 -ffunction-sections -fdata-sections -D_FILE_OFFSET_BITS=64 -D_TIME_BITS=64"
  make -j"$(nproc)" install
}

build_libraries() {
  cmake -G Ninja -S cmake/ppc-libraries -B "$cache/build" --toolchain "$PWD/cmake/toolchain-ppc.cmake" \
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$cache/root" -DCMAKE_INSTALL_MESSAGE=NEVER \
    -DSQLITE_SOURCE="$(echo "$cache"/source/sqlite3-*/)" -DGOOGLETEST_SOURCE=/usr/src/googletest
  ninja -C "$cache/build" install
}

quietly "Fetching the sources of SQLite and libsodium" fetch_sources
quietly "Joining SQLite's sources" amalgamate_sqlite
quietly "Building libsodium for PowerPC" build_libsodium
quietly "Building SQLite and GoogleTest for PowerPC" build_libraries
rm -rf "$cache"/{lists,apt,source,build}
echo "$stamp" >"$cache/stamp"
