#!/bin/bash
# Measures the cost of one event, from the socket to the committed row. Runs the real process on the bench with few
# and with many events, and divides the difference by the events in the recording. Counts instructions on this machine
# with callgrind, instructions on PowerPC with a QEMU plugin, and system calls with strace.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/steps.sh
. scripts/packages.sh
. scripts/build.sh

few=20 many=220 seconds=5  # few, many: events a second; seconds: length of the drive
directory=$(mktemp -d)
trap 'rm -rf "$directory"' EXIT

# program NAME COMMAND: creates a program for the bench that writes its count to $directory/count.
program() {
  printf '#!/bin/bash\n%s\n' "$2" >"$directory/$1"
  chmod +x "$directory/$1"
}

# drive PROGRAM SOURCE RATE: runs a drive; sets `events`, `rows` and `count`.
drive() {
  printf '0 %s rate %s\n%s quit\n' "$2" "$3" "$seconds" >"$directory/drive"
  rm -rf "$directory/out" "$directory/count"
  build/release/bin/vehiclebench run --drive "$directory/drive" --program "$directory/$1" --out "$directory/out" \
    --start-deadline 120 --stop-deadline 120 >"$directory/log" || { cat "$directory/log"; return 1; }
  local recording
  recording=("$directory"/out/mnt/metadata/*.db)
  read -r events rows < <(sqlite3 -readonly -separator ' ' "${recording[0]}" \
    "SELECT (SELECT count(*) FROM $2 WHERE event=1), (SELECT count(*) FROM record WHERE event=1)")
  count=$(cat "$directory/count")
}

# tenths NUMBER DIVISOR: prints NUMBER / DIVISOR with one decimal.
tenths() {
  printf '%d.%d' $(($1 / $2)) $(($1 * 10 / $2 % 10))
}

# difference WHAT PROGRAM SOURCE: prints one row of the table.
difference() {
  local events rows count fewEvents fewRows fewCount
  drive "$2" "$3" $few
  fewEvents=$events fewRows=$rows fewCount=$count
  drive "$2" "$3" $many
  events=$((events - fewEvents))
  printf '| %s | %s | %d | %s | %s |\n' "$1" "$3" $events "$(tenths $((rows - fewRows)) $events)" \
    "$(tenths $((count - fewCount)) $events)"
}

need_packages build run count ppc
scripts/ppc-libraries.sh
build release
build ppc-release
gcc -Wall -Wextra -O2 -shared -fPIC -fvisibility=hidden -o "$directory/plugin.so" scripts/count-instructions.c
program callgrind "valgrind --quiet --tool=callgrind --callgrind-out-file=$directory/instructions \
$PWD/build/release/bin/MetadataMgr \"\$@\" && sed -n 's/^totals: //p' $directory/instructions >$directory/count"
program emulated "INSTRUCTIONS=$directory/count exec qemu-ppc -plugin $directory/plugin.so -L /usr/powerpc-linux-gnu \
$PWD/build/ppc-release/bin/MetadataMgr \"\$@\""
program strace "strace -c -o $directory/calls $PWD/build/release/bin/MetadataMgr \"\$@\" &&
awk '\$NF == \"total\" { print \$4 }' $directory/calls >$directory/count"

echo "| Counted | Source | Events | Rows an event | An event |"
echo "|---|---|---|---|---|"
for source in gps radar; do
  difference "instructions, x86-64" callgrind $source
  difference "instructions, PowerPC" emulated $source
  difference "system calls" strace $source
done
