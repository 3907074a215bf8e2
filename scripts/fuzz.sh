#!/bin/bash
# Usage: fuzz.sh SECONDS [TARGET...]
# Runs each fuzz target of the preset fuzz, or those named, for SECONDS, one after the other. Keeps their corpus
# in build/fuzz/corpus. Writes reports and failing inputs to out/fuzz.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=$1
shift
declare -A maxBytes=([FuzzDrives]=250 [FuzzEndpoint]=2000 [FuzzGps]=2000 [FuzzHandlers]=4000 [FuzzItems]=2100
  [FuzzReader]=600 [FuzzWal]=400)
declare -A moreSeeds=([FuzzDrives]=bench/drives [FuzzGps]=tests/bench/nmea)
mkdir -p out/fuzz
TMPDIR=$(mktemp -d -p /dev/shm fuzz-XXXXXX)
trap 'rm -rf "$TMPDIR"' EXIT
export TMPDIR LOG_TARGET=stderr

# fuzz TARGET: prints one line on success.
fuzz() {
  local target=$1 corpus=build/fuzz/corpus/$1 report=out/fuzz/$1.log seeds=()
  mkdir -p "$corpus"
  [ ! -d "fuzz/corpus/$target" ] || seeds+=("fuzz/corpus/$target")
  [ -z "${moreSeeds[$target]:-}" ] || seeds+=("${moreSeeds[$target]}")
  if ! "build/fuzz/fuzz/$target" -max_total_time="$seconds" -max_len="${maxBytes[$target]}" -timeout=20 \
    -rss_limit_mb=1024 -close_fd_mask=3 -print_final_stats=1 -artifact_prefix="out/fuzz/$target-" \
    "$corpus" "${seeds[@]}" >"$report" 2>&1; then
    grep -vE '^#[0-9]' "$report" | tail -n 40
    echo "$target: FAILED, see $report"
    return 1
  fi
  awk -v name="$target" '/ cov: / { for (i = 1; i < NF; ++i) if ($i == "cov:") cov = $(i + 1) }
    /number_of_executed_units/ { runs = $2 } /peak_rss_mb/ { mb = $2 }
    END { printf "%-14s %9d inputs, %5d places reached, %4d MB\n", name, runs, cov, mb }' "$report"
}

[ $# -ne 0 ] || set -- FuzzDrives FuzzEndpoint FuzzGps FuzzHandlers FuzzItems FuzzReader FuzzWal
for target in "$@"; do fuzz "$target"; done
