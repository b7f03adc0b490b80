#!/usr/bin/env bash
# The Windows build: cross-builds the layers without Qt, their tests and nvtool.exe with
# mingw-w64, runs every test program once under wine, then checks that nvtool.exe reads
# and writes the same companies as the native nvtool, and that a native holder and one
# under wine never hold one company lock at once.
# REQUIRES: scripts/setup.sh has run, and build/default holds the native nvtool.
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=$(nproc)
cmake --preset windows >/dev/null
cmake --build --preset windows -j "$jobs"
ctest --preset windows -j "$jobs"
bash scripts/windows_check.sh build/default/tools/nvtool build/windows/tools/nvtool.exe
