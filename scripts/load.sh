#!/bin/bash
# Usage: load.sh VEHICLEBENCH DIR [SPEED [MAX_KB]]
# Empties DIR and plays bench/drives/load.drive in it: ten servers send as fast as they can. Compares the events
# sent and recorded. SPEED shortens the drive. Fails if an event is lost or recorded twice, or if MetadataMgr ever
# used more than MAX_KB of memory.
set -euo pipefail
bench=$1 dir=$2 speed=${3:-1} maxKb=${4:-}
unset METADATA_ROOT METADATA_SHM LINX_IPC_DIR LOG_TARGET BENCH_SENT
mkdir -p "$dir"
rm -rf "${dir:?}/mnt" "$dir/log"
status=0
"$bench" run --drive "$(dirname "$0")/../bench/drives/load.drive" --speed "$speed" --out "$dir" \
  >"$dir/load.log" || { cat "$dir/load.log" >&2; exit 1; }

# recorded QUERY: prints the sum of the query's column n over all files.
recorded() {
  local file sum=0
  for file in "$dir"/mnt/metadata/*.db; do
    sum=$((sum + $(sqlite3 -readonly "$file" "SELECT coalesce(sum(n), 0) FROM (SELECT $1)")))
  done
  echo "$sum"
}

# sent SOURCE [N]: prints how many events a server sent, in its Nth flood or in all.
sent() {
  awk -v source="$1" -v nth="${2:-0}" \
    '$1 == "flood" && $2 == source && (++n == nth || nth == 0) { sum += $3 } END { print sum + 0 }' \
    "$dir"/sent/*.log
}

# Columns: source, events outside its flood, records per event, table and condition. The crash sensor's first
# value also counts as an event.
slow=$(awk '$1 == "gps"' "$dir/sent/GpsHal.log" | wc -l)
sources=(
  "record-start 0 1 state WHERE signal = 70 AND event = 1"
  "vehicle 0 1 vehicle WHERE event = 1"
  "input 0 1 state WHERE signal = 52 AND event = 1"
  "gps $slow 1 gps WHERE event = 1"
  "radar 0 1 radar WHERE event = 1"
  "mic-message 0 1 mic_present WHERE event = 1"
  "stream 0 1 video_stream WHERE event = 1"
  "crash 1 1 state WHERE signal = 66 AND event = 1"
  "temp 0 4 temperature WHERE event = 1"
  "live-0 0 1 live_stream WHERE event = 1"
)
events=0 first=0
for row in "${sources[@]}"; do
  read -r source more each where <<<"$row"
  count=$(($(sent "$source") + more))
  events=$((events + count))
  first=$((first + $(sent "$source" 1)))
  found=$(recorded "count(*) AS n FROM $where")
  if [ "$found" -ne $((count * each)) ]; then
    echo "FAILED: of $count events of $source there are $found records, not $((count * each))" >&2
    status=1
  fi
done
lost=$(recorded 'sum("count") AS n FROM loss')
[ "$lost" -eq 0 ] || { echo "FAILED: $lost records lost" >&2; status=1; }

peakKb=$(sed -n 's/^MetadataMgr: .*peak memory \([0-9]*\) kB.*/\1/p' "$dir/load.log")
cpuMs=$(sed -n 's/^MetadataMgr: .*CPU \([0-9.]*\) ms.*/\1/p' "$dir/load.log")
records=0
for table in state gps_state gps speed vehicle radar_state radar mic_present mic_active video_stream temperature live_stream; do
  records=$((records + $(recorded "count(*) AS n FROM $table")))
done
if [ -n "$maxKb" ] && [ "$peakKb" -gt "$maxKb" ]; then
  echo "FAILED: $peakKb kB resident, more than $maxKb" >&2
  status=1
fi

# The slow source's longest delay from sender tick to arrival tick.
newest=$(find "$dir/mnt/metadata" -name '*.db' | sort | tail -n 1)
slowest=$(sqlite3 -readonly "$newest" 'SELECT max((tick & 4294967295) - sender_tick) FROM gps
  WHERE event = 1 AND seq > (SELECT coalesce(max(seq), 0) FROM bookmark)')
ratio() { awk -v a="$1" -v b="$2" -v format="$3" 'BEGIN { printf format, a / b }'; }
cat <<END
Sent by ten servers, and recorded:   $events events, none lost: $([ $status -eq 0 ] && echo yes || echo NO)
Events a second, all ten sending:    $(ratio "$first" "$(ratio 10 "$speed" %f)" %.0f)
CPU a stored event:                  $(ratio "${cpuMs}e3" "$events" %.2f) us ($(ratio "${cpuMs}e3" "$records" %.2f) us a record)
Pings meanwhile:                     $(sed -n 's/.*  pings [0-9]*: //p' "$dir/load.log")
Slow source beside nine fast ones:   $slow events, each in the store within $slowest ms
Resident peak:                       $peakKb kB
Longest batch:                       $(sed -n 's/.*The longest batch had //p' "$dir/log/MetadataMgr.log")
END
exit $status
