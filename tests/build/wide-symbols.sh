#!/bin/sh
# Usage: wide-symbols.sh NM PROGRAM
# Fails when a program for a 32-bit machine calls a function with 32-bit times or file offsets, or needs library calls
# for 64-bit atomics. The wall clock of the standard library is forbidden too: it was built with 32-bit times.
set -eu
symbols=$("$1" -D --undefined-only --format=just-symbols "$2" | sed 's/@.*//')
echo "$symbols" | grep -qx '__clock_gettime64' || { echo "$2: no wide calls at all?"; exit 1; }

narrow='(open|openat|creat|lseek|truncate|ftruncate|posix_fallocate|fallocate|pread|pwrite|mmap|readdir|mkostemp'
narrow=$narrow'|stat|fstat|lstat|fstatat|statvfs|fstatvfs|utimes|utimensat|futimens|fcntl|ioctl|fopen|sendfile'
narrow=$narrow'|time|gettimeofday|clock_gettime|clock_nanosleep|nanosleep|gmtime|gmtime_r|localtime|localtime_r|mktime'
narrow=$narrow'|select|ppoll|sendmsg|recvmsg|recvmmsg|getsockopt|setsockopt|timerfd_settime|sem_timedwait|wait4|getrusage)'
if echo "$symbols" | grep -xE "$narrow|__(atomic|sync)_.*_8|_ZNSt6chrono3_V212system_clock3nowEv"; then
  echo "$2: these are too narrow"
  exit 1
fi
echo "$2: good"
