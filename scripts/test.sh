#!/bin/sh
# Installs the packages, builds everything in build/ and runs every test.
# Prints CTest's summary line; exits non-zero on any failure.
set -eu
cd "$(dirname "$0")/.."
./scripts/install_deps.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release
cmake --build build -j2
ctest --test-dir build -j2 --output-on-failure
