#!/bin/bash
# Checks the sources without compiling them: format, includes, shell scripts.
set -euo pipefail
cd "$(dirname "$0")/.."

git ls-files -z -- '*.h' '*.cpp' | xargs -0 -r clang-format --dry-run -Werror

# Include paths keep the layers apart. An include with "../" bypasses them.
if git grep -nE '^ *# *include *"[^"]*\.\./' -- '*.h' '*.cpp'; then
  echo "these includes leave their folder" >&2
  exit 1
fi

git ls-files -z -- run check .ci/run '*.sh' | xargs -0 shellcheck --external-sources
