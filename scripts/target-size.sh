#!/bin/bash
# Usage: target-size.sh PROGRAM LIBSQLITE3.A
# Tells how large a program of the target is when stripped, and how much of that is SQLite, which is linked into it
# whole. Fails where the rest is a megabyte or more.
set -euo pipefail
limit=1000000

stripped=$(mktemp)
trap 'rm -f "$stripped"' EXIT
powerpc-linux-gnu-strip -o "$stripped" "$1"
total=$(stat -c %s "$stripped")
sqlite=$(powerpc-linux-gnu-size "$2" | awk 'NR > 1 { bytes += $1 + $2 } END { print bytes }')
echo "${1##*/}, stripped: $total bytes; SQLite $sqlite, the rest $((total - sqlite)), allowed $limit"
[ "$sqlite" -gt 0 ] && [ $((total - sqlite)) -lt $limit ]
