#!/bin/sh
# Installs the Debian 12 packages that LibZelmo builds, tests and benchmarks
# against. Idempotent: packages already installed are skipped, and nothing is
# fetched when all are present. Runs as root, or through sudo otherwise.
set -eu

PACKAGES="
  cmake g++ make pkg-config
  libgtest-dev libbenchmark-dev
  libopencv-dev
  libpcl-dev
  libocct-foundation-dev libocct-modeling-data-dev
  libocct-modeling-algorithms-dev libocct-visualization-dev
  libocct-ocaf-dev libocct-data-exchange-dev
  libgsl-dev liblapack-dev libboost-dev
"

missing=""
for p in $PACKAGES; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "ok installed"; then
    missing="$missing $p"
  fi
done

if [ -z "$missing" ]; then
  echo "install_deps: all packages present"
  exit 0
fi

SUDO=""
if [ "$(id -u)" -ne 0 ]; then
  SUDO="sudo"
fi

echo "install_deps: installing$missing"
$SUDO apt-get update -qq
DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq \
  --no-install-recommends $missing
