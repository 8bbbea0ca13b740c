#!/usr/bin/env bash
# Configures and builds Kordel into a build folder.
#   scripts/build.sh [--sanitize] [build-folder]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)

sanitize=OFF
build=""
for a in "$@"; do
  case "$a" in
    --sanitize) sanitize=ON ;;
    *) build="$a" ;;
  esac
done
if [ -z "$build" ]; then
  if [ "$sanitize" = ON ]; then build="$root/build-asan"; else build="$root/build"; fi
fi

cmake -G Ninja -S "$root" -B "$build" -DKORDEL_SANITIZE="$sanitize" >/dev/null
ninja -C "$build" -j"$(nproc)"
