# Sourced: configures and builds a preset and shows progress. Prints nothing if there is nothing to do.
# shellcheck shell=bash

configure() {
  quietly "Configuring $1" cmake --preset "$1"
}

# build PRESET [NINJA-ARGUMENT...]: builds what is out of date. Ninja does not track two files: changed presets
# need a new configuration, changed clang-tidy checks a new build.
build() {
  local preset=$1 dir=build/$1
  shift
  if [ "$preset" = tidy ] && [ .clang-tidy -nt "$dir/build.ninja" ]; then
    rm -rf "$dir"
  fi
  if [ CMakePresets.json -nt "$dir/build.ninja" ]; then
    configure "$preset"
  fi
  if [ "$(ninja -C "$dir" -n "$@" | tail -n 1)" = "ninja: no work to do." ]; then
    return
  fi
  echo "Building $preset"
  if [ -t 1 ]; then
    ninja -C "$dir" "$@"
  else
    ninja -C "$dir" "$@" | thin_out
  fi
}

# Passes one of ninja's progress lines every ten seconds, and all other lines.
thin_out() {
  local line next=0
  while IFS= read -r line; do
    case $line in
      '['[0-9]*/[0-9]*']'*)
        [ $SECONDS -ge $next ] || continue
        next=$((SECONDS + 10))
        ;;
      'ninja: Entering directory'* | '-- '*) continue ;;
    esac
    printf '%s\n' "$line"
  done
}
