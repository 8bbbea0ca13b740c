#!/usr/bin/env bash
# Sets the machine up, builds Kordel and runs its main job.
# Until reports can be printed, the main job is the furthest real road:
# it creates the demo database and runs an automation script against it
# through the host's object model.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)

bash "$root/scripts/setup.sh"
bash "$root/scripts/build.sh"

orvex="$root/build/bin/orvex"
database="${ORVEX_DEMO_DB:-$root/build/demo.db}"
rm -f "$database"
"$orvex" demo --db "$database" --companies 1000 --seed 1
"$orvex" script --db "$database" "$root/examples/customers.vbs"
