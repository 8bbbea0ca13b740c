#!/usr/bin/env bash
# Installs the Debian packages that Kordel needs.
#   scripts/setup.sh            everything: building, running and testing
#   scripts/setup.sh --runtime  only what building and running the program need
# Safe to run again: packages that are there are skipped.
set -euo pipefail

# To build the program and the add-in, and to run them.
runtime=(
  build-essential cmake ninja-build pkg-config
  qt6-base-dev qt6-declarative-dev libqt6sql6-sqlite libqt6sql6-psql
  libxml2-dev libtiff-dev libsqlite3-dev libcups2-dev libxlsxwriter-dev
  libharfbuzz-dev libfontconfig-dev zlib1g-dev
  fonts-dejavu-core fonts-noto-cjk
)

# For the tests: the test framework, a private PostgreSQL server, a print
# system with a PDF printer, readers of the exported files (PDF, TIFF, the
# office suite for XLS and RTF) and a virtual display with tools that
# find and photograph its windows. The sanitizer build (build-asan/) is a
# clang build with the fuzz programs: clang itself, its sanitizer and
# libFuzzer runtimes, and the symbolizer that names the functions of a
# sanitizer's stack traces.
tests=(
  googletest libgtest-dev libgmock-dev
  clang-14 libclang-rt-14-dev llvm
  postgresql
  cups printer-driver-cups-pdf
  poppler-utils qpdf libtiff-tools
  libreoffice-writer-nogui libreoffice-calc-nogui
  xvfb xauth x11-utils imagemagick xdotool
)

case "${1:-}" in
  --runtime) packages=("${runtime[@]}") ;;
  "") packages=("${runtime[@]}" "${tests[@]}") ;;
  *)
    echo "usage: scripts/setup.sh [--runtime]" >&2
    exit 2
    ;;
esac

if [ "$(id -u)" -eq 0 ]; then
  as_root=()
else
  as_root=(sudo)
fi

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "setup: all packages present"
  exit 0
fi

echo "setup: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
