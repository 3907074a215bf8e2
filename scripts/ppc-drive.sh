#!/bin/bash
# Plays the default drive of the debug build's bench to the MetadataMgr of the PowerPC build, under
# emulation, and to its own: both must record every event, and the same. Both are built before.
set -euo pipefail
cd "$(dirname "$0")/.."

program=$(mktemp)
trap 'rm -f "$program"' EXIT
printf '#!/bin/sh\nexec qemu-ppc -L /usr/powerpc-linux-gnu "%s" "$@"\n' "$PWD/build/ppc/bin/MetadataMgr" \
  >"$program"
chmod +x "$program"
OTHER_METADATAMGR=$program build/debug/tests/DriveRowsTest --gtest_filter='RowsOfAnotherMachine.*'
