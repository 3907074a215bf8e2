#!/bin/bash
# Usage: replay.sh DIRECTORY-OF-PROGRAMS DIR
# Measures replays in DIR, which it empties: how late events are at 100 a second in real time, and how fast eight hours
# of GPS at 5 Hz are with --speed max, with what memory. Fails if a replay fails or records something else.
set -euo pipefail
programs=$1 dir=$2
unset METADATA_ROOT METADATA_SHM LINX_IPC_DIR LOG_TARGET BENCH_SENT
mkdir -p "$dir"
rm -rf "${dir:?}"/{hundred,hours}{,-again}

# record NAME SPEED LINE...: plays a drive.
record() {
  local name=$1 speed=$2
  shift 2
  printf '%s\n' "$@" >"$dir/$name.drive"
  "$programs/vehiclebench" run --drive "$dir/$name.drive" --speed "$speed" --out "$dir/$name" >"$dir/$name.log"
}

# replay NAME SECONDS OPTION...: plays the recording of that drive, which lasts so long, and compares.
replay() {
  local name=$1 seconds=$2 pid begin ms kb first=0 most=0
  shift 2
  begin=$(date +%s%N)
  "$programs/vehiclebench" replay "$dir/$name/mnt/metadata" "$@" --out "$dir/$name-again" >"$dir/$name-again.log" &
  pid=$!
  while sleep 0.5 && kb=$(awk '/^VmRSS/ { print $2 }' "/proc/$pid/status" 2>/dev/null) && [ -n "$kb" ]; do
    [ "$first" -ne 0 ] || first=$kb
    [ "$kb" -le "$most" ] || most=$kb
  done
  wait "$pid"
  ms=$((($(date +%s%N) - begin) / 1000000))
  grep -E 'taken:|^MetadataMgr|^Good' "$dir/$name-again.log"
  echo "bench: $first kB after half a second, $most kB at most; $seconds s in $ms ms"
  "$programs/metadata" diff "$dir/$name/mnt/metadata" "$dir/$name-again/mnt/metadata"
}

echo "== 100 events a second in real time"
record hundred 1 '0 gps rate 40' '0 radar rate 30' '0 temp rate 30' '60 gps rate 0' '60 radar rate 0' '60 temp rate 0' '61 quit'
replay hundred 60 --speed 1
echo "== eight hours with 5 GPS readings a second, as fast as possible"
record hours 1000 '0 gps rate 5' '28800 gps rate 0' '28801 quit'
replay hours 28800 --speed max
