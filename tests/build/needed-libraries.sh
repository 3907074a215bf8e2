#!/bin/sh
# Usage: needed-libraries.sh PROGRAM PREFIX...
# Fails when the program needs a library without one of these prefixes, or needs no library.
set -eu
program=$1
shift
needed=$(objdump -p "$program" | awk '$1 == "NEEDED" { print $2 }')
[ -n "$needed" ] || { echo "$program: no dynamic library at all?"; exit 1; }

status=0
for library in $needed; do
  allowed=no
  for prefix in "$@"; do
    case $library in "$prefix"*) allowed=yes ;; esac
  done
  echo "$library: allowed: $allowed"
  [ $allowed = yes ] || status=1
done
exit $status
