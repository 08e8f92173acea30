#!/bin/sh
# The main job: installs the packages, builds the library and runs the
# example host programs.
set -eu
cd "$(dirname "$0")/.."
./scripts/install_deps.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release
cmake --build build -j2
for example in build/examples/zelmo_example_*; do
  echo "== $example"
  "$example"
done
