#!/usr/bin/env bash
# Configures and builds Kordel into a build folder.
#   scripts/build.sh [build-folder]                everything, tests included,
#                                                  in build/
#   scripts/build.sh --sanitize [build-folder]     the same with clang, ASan and
#                                                  UBSan, in build-asan/, with
#                                                  the fuzz programs (fuzz/)
#   scripts/build.sh ... --target=NAME             only that target (repeatable)
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
    --target=*) targets+=("${a#--target=}") ;;
    *) build="$a" ;;
  esac
done
if [ -z "$build" ]; then
  if [ "$sanitize" = ON ]; then
    build="$root/build-asan"
  else
    build="$root/build"
  fi
fi

compiler=()
if [ "$sanitize" = ON ]; then
  # One build for the sanitizer tests and the fuzz programs: libFuzzer
  # comes with clang.
  compiler=(-DCMAKE_CXX_COMPILER=clang++-14)
  # A folder configured with another compiler is configured afresh: CMake
  # keeps the compiler of the first configuration.
  cache="$build/CMakeCache.txt"
  if [ -f "$cache" ] && ! grep -q '^CMAKE_CXX_COMPILER:[A-Z]*=.*clang++-14$' "$cache"; then
    rm -rf "$cache" "$build/CMakeFiles"
  fi
fi

cmake -G Ninja -S "$root" -B "$build" "${compiler[@]}" -DKORDEL_SANITIZE="$sanitize" -DKORDEL_TESTS="$tests" >/dev/null
ninja -C "$build" -j"$(nproc)" "${targets[@]}"
