#!/bin/bash
# What can be said about the sources without compiling them: format, includes, shell scripts.
set -euo pipefail
cd "$(dirname "$0")/.."

git ls-files -z -- '*.h' '*.cpp' | xargs -0 -r clang-format --dry-run -Werror

# The include paths keep the layers apart; an include that climbs out of its folder goes round them.
if git grep -nE '^ *# *include *"[^"]*\.\./' -- '*.h' '*.cpp'; then
  echo "these includes leave their folder" >&2
  exit 1
fi

git ls-files -z -- run check .ci/run '*.sh' | xargs -0 shellcheck --external-sources
