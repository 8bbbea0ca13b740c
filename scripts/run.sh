#!/usr/bin/env bash
# Sets the machine up, builds Kordel and runs its main job.
# Until reports can be printed the main job is the host's "about": it shows
# the language and where settings, the log and the databases live.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)

bash "$root/scripts/setup.sh"
bash "$root/scripts/build.sh"
export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen}
"$root/build/bin/orvex" about
