#!/bin/bash
# Runs Clang's analyzer over the programs and their libraries. It does not follow calls deeply: that would take as
# long as all other checks together. Not over tests: what a wrong test does, the sanitizers show.
# Needs the configured preset clang.
set -euo pipefail
cd "$(dirname "$0")/.."

# Padding: members stand in reading order; the objects are few.
if ! said=$(run-clang-tidy -quiet -p build/clang \
  -checks='-*,clang-analyzer-*,-clang-analyzer-optin.performance.Padding' \
  -extra-arg=-Xclang -extra-arg=-analyzer-config -extra-arg=-Xclang -extra-arg=mode=shallow \
  "^$PWD/(platform|items|Common|MetadataMgr|reader|bench)/" 2>&1); then
  printf '%s\n' "$said" >&2
  exit 1
fi
