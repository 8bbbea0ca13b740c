#!/usr/bin/env bash
# Installs every Debian package that Kordel needs to build, test and run.
# Safe to run again: apt skips what is already there.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config
  qt6-base-dev qt6-declarative-dev libqt6sql6-sqlite libqt6sql6-psql postgresql
  libxml2-dev libtiff-dev libsqlite3-dev libcups2-dev
  googletest libgtest-dev libgmock-dev
  poppler-utils cups printer-driver-cups-pdf libtiff-tools
  fonts-dejavu-core xvfb xauth
  libreoffice-writer-nogui
  libreoffice-calc-nogui
)

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
