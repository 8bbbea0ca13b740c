#!/usr/bin/env bash
# Configures and builds Kordel into a build folder.
#   scripts/build.sh [--sanitize] [build-folder]   everything, tests included
#   scripts/build.sh --main [build-folder]         only the program, the add-in
#                                                  and their libraries
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)

sanitize=OFF
tests=ON
targets=()
build=""
for a in "$@"; do
  case "$a" in
    --sanitize) sanitize=ON ;;
    # orvex depends on the add-in and its message texts, so it brings them.
    --main)
      tests=OFF
      targets=(orvex)
      ;;
    *) build="$a" ;;
  esac
done
if [ -z "$build" ]; then
  if [ "$sanitize" = ON ]; then build="$root/build-asan"; else build="$root/build"; fi
fi

cmake -G Ninja -S "$root" -B "$build" -DKORDEL_SANITIZE="$sanitize" -DKORDEL_TESTS="$tests" >/dev/null
ninja -C "$build" -j"$(nproc)" "${targets[@]}"
