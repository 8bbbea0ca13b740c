#!/usr/bin/env bash
# Runs the libFuzzer programs of fuzz/ in the clang sanitizer build (build-asan/).
#   scripts/fuzz.sh TARGET SECONDS   one target, building it first if needed
#   scripts/fuzz.sh all SECONDS      every target, one after the other
#   scripts/fuzz.sh list             the targets
# A target fuzzes on its seed corpus (fuzz/corpus/TARGET, and the folders
# that fuzz/TARGET.seeds names, one a line) with its dictionary
# (fuzz/TARGET.dict). What it learns goes to a scratch corpus
# ($KORDEL_FUZZ_DIR/TARGET/corpus, by default build-asan/fuzz/), never into
# the seed corpus. A crash, a leak, a time-out or running out of memory is
# a finding: the input is kept in $KORDEL_FUZZ_DIR/TARGET/findings, its path
# is printed, and the script exits with 1 once every target has run.
# Further arguments after SECONDS go to libFuzzer (for example -runs=1000000).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build="$root/build-asan"
work="${KORDEL_FUZZ_DIR:-$build/fuzz}"

targets() {
  local dict
  for dict in "$root"/fuzz/*.dict; do
    basename "$dict" .dict
  done
}

usage() {
  echo "usage: scripts/fuzz.sh TARGET|all SECONDS [LIBFUZZER-OPTIONS...]" >&2
  echo "targets: $(targets | tr '\n' ' ')" >&2
  exit 2
}

if [ "${1:-}" = list ]; then
  targets
  exit 0
fi
[ $# -ge 2 ] || usage
which="$1"
seconds="$2"
shift 2
[[ "$seconds" =~ ^[0-9]+$ ]] || usage
if [ "$which" = all ]; then
  mapfile -t chosen < <(targets)
else
  [ -f "$root/fuzz/$which.dict" ] || usage
  chosen=("$which")
fi

build_targets=()
for t in "${chosen[@]}"; do
  build_targets+=("--target=fuzz_$t")
done
bash "$root/scripts/build.sh" --sanitize "${build_targets[@]}" >/dev/null

# Sanitizer reports are findings; the libraries' known leaks are not.
export ASAN_OPTIONS="detect_leaks=1:strict_string_checks=1"
export UBSAN_OPTIONS="halt_on_error=1:print_stacktrace=1"
export LSAN_OPTIONS="suppressions=$root/scripts/lsan.supp:print_suppressions=0"
export QT_QPA_PLATFORM=offscreen
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export ORVEX_CONFIG_DIR="$scratch/config" ORVEX_DATA_DIR="$scratch/data" HOME="$scratch/home"
mkdir -p "$HOME"

failed=0
for t in "${chosen[@]}"; do
  corpus="$work/$t/corpus"
  findings="$work/$t/findings"
  mkdir -p "$corpus" "$findings"
  log="$work/$t/last-run.log"
  echo "fuzz: $t for ${seconds}s" >&2
  status=0
  # -timeout: no single input may take that long; the script budget of the
  # interpreter ends runaway scripts well before it.
  # Seeds: the target's own corpus, and the folders its .seeds file names
  # (the conformance scripts of the interpreter serve as they are).
  seeds=()
  [ -d "$root/fuzz/corpus/$t" ] && seeds+=("$root/fuzz/corpus/$t")
  if [ -f "$root/fuzz/$t.seeds" ]; then
    while read -r folder; do
      [ -n "$folder" ] && seeds+=("$root/$folder")
    done <"$root/fuzz/$t.seeds"
  fi
  "$build/bin/fuzz_$t" "$corpus" "${seeds[@]}" -dict="$root/fuzz/$t.dict" \
    -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
    -artifact_prefix="$findings/" "$@" >"$log" 2>&1 || status=$?
  grep -E '^(#[0-9]+ +DONE|stat::number_of_executed_units|stat::average_exec_per_sec)' "$log" >&2 || true
  if [ "$status" -ne 0 ]; then
    failed=1
    echo "fuzz: $t FOUND A FAULT (exit $status); the log is $log" >&2
    grep -E '^(==[0-9]+==ERROR|SUMMARY|.*runtime error)' "$log" | head -5 >&2 || true
    grep -E 'Test unit written to' "$log" | sed 's/.*Test unit written to /fuzz: input /' >&2 || true
  fi
done
exit "$failed"
