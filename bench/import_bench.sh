#!/usr/bin/env bash
# Importing report documents of many fields: `orvex report-import` of
# documents of 1,000 to 16,000 fields into one demo database, each time
# against the 1,000-field import as the baseline. The time per field
# should stay flat as the fields grow.
#
#   bench/import_bench.sh
set -euo pipefail

root="$(cd "$(dirname "$0")/.." && pwd)"
orvex="$root/build/bin/orvex"
[ -x "$orvex" ] || { echo "import_bench: build first (scripts/build.sh)" >&2; exit 1; }
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
export ORVEX_CONFIG_DIR="$work/config" ORVEX_DATA_DIR="$work/data" QT_QPA_PLATFORM=offscreen
"$orvex" demo --db "$work/demo.db" --companies 10 >/dev/null 2>&1

# A report on product whose one page has that many fields.
document() {
  local fields="$1" out="$2"
  {
    printf '<?xml version="1.0"?>\n<application><section name="system"><property name="name" value="Fields %s"/></section>' "$fields"
    printf '<section name="settings"><property name="toppage" value="{0B6A53A4-2F61-4C36-9D8E-7A1C29F0D4B2}"/>'
    printf '<property name="source" value="product"/></section><section name="pages">'
    printf '<section name="{0B6A53A4-2F61-4C36-9D8E-7A1C29F0D4B2}"><property name="name" value="Products"/>'
    printf '<property name="source" value="product"/><section name="fields">'
    for ((i = 0; i < fields; i++)); do
      printf '<section name="f%d"><property name="name" value="f%d"/><property name="expression" value="name"/></section>' "$i" "$i"
    done
    printf '</section></section></section></application>\n'
  } >"$out"
}

base=""
printf '%8s %9s %14s %s\n' fields seconds "ms per field" "against 1,000 fields"
for fields in 1000 2000 4000 8000 16000; do
  document "$fields" "$work/f$fields.xml"
  start=$(date +%s.%N)
  "$orvex" report-import "$work/f$fields.xml" --db "$work/demo.db" >/dev/null
  seconds=$(echo "$(date +%s.%N) - $start" | bc -l)
  per=$(echo "$seconds * 1000 / $fields" | bc -l)
  [ -n "$base" ] || base="$per"
  printf '%8d %9.2f %14.3f %6.2fx\n' "$fields" "$seconds" "$per" "$(echo "$per / $base" | bc -l)"
done
