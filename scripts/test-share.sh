#!/bin/bash
# Counts the lines of C++ code, without blank lines and comments, and prints the share of the tests. Fails if that
# share is more than a third.
set -euo pipefail
cd "$(dirname "$0")/.."

# code_lines PATHSPEC...: the preprocessor drops comments and blank lines and leaves everything else.
code_lines() {
  git ls-files -z -- "$@" | xargs -0 cat | g++ -fpreprocessed -dD -E -P -x c++ - 2>/dev/null | wc -l
}

tests=$(code_lines 'tests/*.h' 'tests/*.cpp')
all=$(code_lines '*.h' '*.cpp')
echo "tests: $tests of $all lines of code, $((1000 * tests / all / 10)).$((1000 * tests / all % 10)) %"
[ $((3 * tests)) -le "$all" ]
