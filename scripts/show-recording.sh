#!/bin/bash
# Usage: show-recording.sh DIR READER PAGE
# Shows the newest recording below DIR and its path, without changing it. If the program READER exists, writes
# its report to PAGE.
set -euo pipefail

newest=$(find "$1" -name 'metadata.[0-9]*.db' -printf '%T@ %p\n' | sort -n | tail -n 1 | cut -d ' ' -f 2-)
[ -n "$newest" ] || { echo "No recording below $1." >&2; exit 1; }

echo
echo "Recorded, by source:"
sqlite3 -readonly -column -header "$newest" \
  'SELECT source, count(*) AS records, min(substr(utc, 12, 12)) AS first, max(substr(utc, 12, 12)) AS last
   FROM timeline GROUP BY source ORDER BY min(seq)'
echo
echo "The last events:"
sqlite3 -readonly -column "$newest" \
  "SELECT utc, source, text FROM
     (SELECT * FROM timeline WHERE event = 'event' ORDER BY seq DESC LIMIT 15) ORDER BY seq"
echo
echo "The recording:  $newest ($(stat -c %s "$newest") bytes)"
echo "To look inside: sqlite3 -readonly $newest 'SELECT * FROM timeline'"

rm -f "$3"
if [ -x "$2" ]; then
  "$2" report -o "$3" "$newest" || echo "The page is not what it should be." >&2
fi
