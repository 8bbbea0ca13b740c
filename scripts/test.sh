#!/usr/bin/env bash
# Sets the machine up, builds Kordel and runs every test.
#   scripts/test.sh              the normal build, in build/
#   scripts/test.sh --sanitize   with AddressSanitizer and UBSan, in build-asan/
#                                and then, when KORDEL_FUZZ_SECONDS is set,
#                                each fuzz program of fuzz/ that long
# Any further arguments go to ctest (for example -R Dictionary).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)

sanitize=()
ctest_args=()
for a in "$@"; do
  case "$a" in
    --sanitize) sanitize=(--sanitize) ;;
    *) ctest_args+=("$a") ;;
  esac
done

bash "$root/scripts/setup.sh"
bash "$root/scripts/build.sh" "${sanitize[@]}"

if [ ${#sanitize[@]} -gt 0 ]; then
  build="$root/build-asan"
  # Any sanitizer report ends the test process with a failure.
  export ASAN_OPTIONS="abort_on_error=1:detect_leaks=1:strict_string_checks=1"
  export UBSAN_OPTIONS="halt_on_error=1:print_stacktrace=1"
  export LSAN_OPTIONS="suppressions=$root/scripts/lsan.supp:print_suppressions=0"
else
  build="$root/build"
fi

export QT_QPA_PLATFORM=offscreen
# Tests write settings, logs and databases into a throwaway home.
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export ORVEX_CONFIG_DIR="$scratch/config" ORVEX_DATA_DIR="$scratch/data" HOME="$scratch/home"
mkdir -p "$HOME"

ctest --test-dir "$build" --output-on-failure -j"$(nproc)" "${ctest_args[@]}"

if [ ${#sanitize[@]} -gt 0 ] && [ "${KORDEL_FUZZ_SECONDS:-0}" != 0 ]; then
  # A short fuzz pass on the seed corpora; any finding fails the run.
  bash "$root/scripts/fuzz.sh" all "$KORDEL_FUZZ_SECONDS"
fi
