#!/bin/bash
# Usage: target-size.sh PROGRAM LIBSQLITE3.A
# Prints the stripped size of a program for the target, and how much of it is SQLite, which is linked in whole.
# Fails if the rest is a megabyte or more.
set -euo pipefail
limit=1000000

stripped=$(mktemp)
trap 'rm -f "$stripped"' EXIT
powerpc-linux-gnu-strip -o "$stripped" "$1"
total=$(stat -c %s "$stripped")
sqlite=$(powerpc-linux-gnu-size "$2" | awk 'NR > 1 { bytes += $1 + $2 } END { print bytes }')
echo "${1##*/}, stripped: $total bytes; SQLite $sqlite, the rest $((total - sqlite)), allowed $limit"
[ "$sqlite" -gt 0 ] && [ $((total - sqlite)) -lt $limit ]
