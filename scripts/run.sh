#!/usr/bin/env bash
# Sets the machine up, builds Kordel and runs its main job: a demo database
# of 1,000 companies and the ready report "Company history" (companies,
# their persons and each person's history) for all companies, exported to
# a PDF file (~/company-history.pdf unless KORDEL_OUT names another).
# Only what the job needs is installed and built; scripts/test.sh adds the
# rest.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)

step() { echo "run: $*" >&2; }

step "1/4 installing the Debian packages to build and run Kordel (scripts/setup.sh --runtime)"
bash "$root/scripts/setup.sh" --runtime

step "2/4 building the orvex program, the add-in and their libraries into build/ (minutes the first time)"
bash "$root/scripts/build.sh" --main

orvex="$root/build/bin/orvex"
database="${ORVEX_DEMO_DB:-$root/build/demo.db}"
out="${KORDEL_OUT:-$HOME/company-history.pdf}"

step "3/4 making a demo database of 1,000 companies in $database"
rm -f "$database" "$database-wal" "$database-shm"
"$orvex" demo --db "$database" --companies 1000 --seed 1

step "4/4 exporting the report \"Company history\" for all companies to $out"
"$orvex" export --report "Company history" --all --out "$out" --db "$database"
