#!/bin/bash
# Usage: exchange.sh PROGRAM-OF-ONE-MACHINE PROGRAM-OF-THE-OTHER (a path or a command)
# Each program writes recordings and a shared record. The bytes must be equal, and each reads the files of the other.
set -euo pipefail
one=("$1")
shift
other=("$@")
directory=$(mktemp -d)
trap 'rm -rf "$directory" "/dev/shm/${directory##*/}"-{one,other}' EXIT
mkdir "$directory"/{one,other}

# run DIRECTORY CASES COMMAND...
run() {
  local name=$1 cases=$2
  shift 2
  MM_EXCHANGE=$directory/$name METADATA_SHM=${directory##*/}-$name "$@" --gtest_filter="*.$cases" |
    tee "$directory/output"
  grep -q '^\[  PASSED  \] 2 tests' "$directory/output"
}

run one IsWrittenAsItAlwaysWas "${one[@]}"
run other IsWrittenAsItAlwaysWas "${other[@]}"
cmp "/dev/shm/${directory##*/}"-{one,other}
# The salt of a WAL is random, so only the recording without a WAL is compared.
cmp "$directory"/{one,other}/clean.000001.db
run other IsReadAsItWasWritten "${one[@]}"
run one IsReadAsItWasWritten "${other[@]}"
