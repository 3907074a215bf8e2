#!/bin/bash
# Starts MetadataMgr with the options in METADATAMGR_OPTIONS: a program for vehiclebench, which gives none.
set -euo pipefail
# shellcheck disable=SC2086  # one word, one option
exec "$(dirname "$0")/../build/release/bin/MetadataMgr" ${METADATAMGR_OPTIONS:-}
