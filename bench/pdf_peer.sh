#!/usr/bin/env bash
# The demo report "Deals by value" to PDF: `orvex export` against the same
# report drawn by a peer Python PDF library on its fastest road, canvas
# drawing (bench/peer/deals_by_value.py), from the same SQLite file, run
# one after the other on this machine.
# Prints both times, their ratio and both peak memories.
#
#   bench/pdf_peer.sh [--companies N] [--db FILE]
#
# The demo has about two deals a company: 50,000 companies make some
# 100,000 deals. A database given with --db is used as it is. Installs
# Debian's python3-reportlab when it is missing (the tests do not need it).
set -euo pipefail

root="$(cd "$(dirname "$0")/.." && pwd)"
orvex="$root/build/bin/orvex"
companies=50000
db=""
while [ $# -gt 0 ]; do
  case "$1" in
    --companies) companies="$2"; shift 2 ;;
    --db) db="$2"; shift 2 ;;
    *) echo "usage: bench/pdf_peer.sh [--companies N] [--db FILE]" >&2; exit 2 ;;
  esac
done
[ -x "$orvex" ] || { echo "pdf_peer: build first (scripts/build.sh)" >&2; exit 1; }

if ! /usr/bin/python3 -c "import reportlab" 2>/dev/null; then
  echo "pdf_peer: installing python3-reportlab" >&2
  as_root=()
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install -y -qq --no-install-recommends python3-reportlab >/dev/null
fi

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
export ORVEX_CONFIG_DIR="$work/config" ORVEX_DATA_DIR="$work/data" QT_QPA_PLATFORM=offscreen
if [ -z "$db" ]; then
  db="$work/demo.db"
  echo "pdf_peer: making a demo of $companies companies" >&2
  "$orvex" demo --db "$db" --companies "$companies" >/dev/null 2>&1
fi
deals="$(/usr/bin/python3 -c "import sqlite3,sys; print(sqlite3.connect(sys.argv[1]).execute('select count(*) from deal').fetchone()[0])" "$db")"

# Both read the file once before timing, so that neither pays for a cold cache.
cat "$db" >/dev/null
/usr/bin/time -f "%e %M" -o "$work/ours.time" \
  "$orvex" export --db "$db" --report "Deals by value" --all --out "$work/ours.pdf" >/dev/null 2>&1
read -r ours_s ours_kb <"$work/ours.time"
read -r peer_s peer_mb < <(/usr/bin/python3 "$root/bench/peer/deals_by_value.py" "$db" "$work/peer.pdf")

printf 'deals             %d\n' "$deals"
printf 'orvex export      %6.2f s  %5d MB peak\n' "$ours_s" "$((ours_kb / 1024))"
printf 'peer canvas       %6.2f s  %5d MB peak\n' "$peer_s" "$peer_mb"
printf 'ratio             %6.2f (ours / peer; the goal is 0.5 or less)\n' "$(echo "$ours_s / $peer_s" | bc -l)"
