#!/bin/bash
# Makes the Debian packages for this machine and for PowerPC, and checks them.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/steps.sh
. scripts/packages.sh
. scripts/build.sh

# package PRESET ARCHITECTURE
package() {
  local dir=build/$1/packages
  build "$1"
  rm -rf "$dir"
  quietly "Packing for $2" cpack --config "build/$1/CPackConfig.cmake" -B "$PWD/$dir"
  local files=("$dir"/*.deb)
  printf '%s\n' "${files[@]}"
  [ "$(dpkg-deb --field "$dir"/metadatamgr_*.deb Architecture)" = "$2" ]
  # The package must contain the service and not the bench vehicle.
  local content
  content=$(dpkg-deb --contents "$dir"/metadatamgr_*.deb)
  [[ $content == *./usr/sbin/MetadataMgr* && $content != *vehiclebench* ]]
}

need_packages build package ppc
scripts/ppc-libraries.sh
package release "$(dpkg --print-architecture)"
package ppc-release powerpc
scripts/target-size.sh build/ppc-release/bin/MetadataMgr .cache/ppc/root/lib/libsqlite3.a
