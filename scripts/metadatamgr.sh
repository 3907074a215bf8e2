#!/bin/bash
# Starts MetadataMgr with the options in METADATAMGR_OPTIONS, for vehiclebench, which passes none.
set -euo pipefail
# shellcheck disable=SC2086  # one word, one option
exec "$(dirname "$0")/../build/release/bin/MetadataMgr" ${METADATAMGR_OPTIONS:-}
