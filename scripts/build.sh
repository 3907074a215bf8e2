# Sourced: configures and builds a preset, showing progress; says nothing when there is nothing to do.
# shellcheck shell=bash

configure() {
  quietly "Configuring $1" cmake --preset "$1"
}

# build PRESET [NINJA-ARGUMENT...]: builds what is out of date. Ninja does not know these two files:
# other presets need a new configuration, other checks a new build.
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

# Of ninja's counting lines one in ten seconds; everything else as it is.
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
