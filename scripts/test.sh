#!/usr/bin/env bash
# Installs what is missing, builds the normal and the sanitizer configuration,
# and runs every test in both. Also replays each fuzz target over its corpus, and builds
# the Windows programs and runs their tests under wine (scripts/windows.sh).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
jobs=$(nproc)
export QT_QPA_PLATFORM=offscreen

for preset in default sanitize; do
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset" -j "$jobs"
done

bash scripts/fuzz.sh replay
ctest --preset default -j "$jobs"
ctest --preset sanitize -j "$jobs"
bash scripts/windows.sh
