# Sourced: shows that a step runs and how it ended.
# The sourcing script has set -e. Call nothing here in a condition: that would suspend set -e.
# shellcheck shell=bash

currentStep=
trap 'status=$?
      [ -z "${ticker:-}" ] || kill "$ticker" 2>/dev/null || true
      [ $status -eq 0 ] || [ -z "$currentStep" ] || echo "== FAILED: $currentStep" >&2' EXIT

# step TITLE COMMAND...: prints a heading, the command's output and its duration.
step() {
  local title=$1 start=$SECONDS
  shift
  echo "== $title"
  currentStep=$title
  "$@"
  currentStep=
  echo "== $title: done, $((SECONDS - start)) s"
}

# quietly TITLE COMMAND...: prints a line that grows while the command runs, and the output only on failure.
quietly() {
  local title=$1 start=$SECONDS log status
  shift
  log=$(mktemp)
  printf '%s ' "$title"
  (while sleep 2 >/dev/null 2>&1; do printf .; done) &
  ticker=$!
  set +e
  (set -e; "$@") </dev/null >"$log" 2>&1
  status=$?
  set -e
  kill $ticker
  wait $ticker 2>/dev/null || true
  ticker=
  echo " $((SECONDS - start)) s"
  if [ $status -ne 0 ]; then
    tail -n 60 "$log"
    echo "$title: failed with status $status, the last lines are above." >&2
  fi
  rm -f "$log"
  return $status
}
