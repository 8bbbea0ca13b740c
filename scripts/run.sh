#!/usr/bin/env bash
# Sets the machine up, builds Kordel and runs its main job: a demo database
# of 1,000 companies and the ready report "Company history" (companies,
# their persons and each person's history) for all companies, exported to
# a PDF file (~/company-history.pdf unless KORDEL_OUT names another).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)

bash "$root/scripts/setup.sh"
bash "$root/scripts/build.sh"

orvex="$root/build/bin/orvex"
database="${ORVEX_DEMO_DB:-$root/build/demo.db}"
out="${KORDEL_OUT:-$HOME/company-history.pdf}"
rm -f "$database"
"$orvex" demo --db "$database" --companies 1000 --seed 1
"$orvex" export --report "Company history" --all --out "$out" --db "$database"
