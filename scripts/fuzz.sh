#!/usr/bin/env bash
# Fuzz targets live in fuzz/NAME_fuzz.cpp with their seed corpus in fuzz/corpus/NAME/.
#   scripts/fuzz.sh replay            run every target once over its seed corpus (used by the tests)
#   scripts/fuzz.sh run SECONDS [NAME] fuzz each target (or NAME) for SECONDS, corpus kept in fuzz-out/
set -euo pipefail
cd "$(dirname "$0")/.."
bin=build/sanitize/fuzz
mode=${1:-replay}
shopt -s nullglob
targets=()
for src in fuzz/*_fuzz.cpp; do
  name=$(basename "$src" .cpp)
  name=${name%_fuzz}
  if [ -n "${3:-}" ] && [ "$3" != "$name" ]; then continue; fi
  targets+=("$name")
done
passed=0
for name in "${targets[@]}"; do
  exe="$bin/${name}_fuzz"
  [ -x "$exe" ] || { echo "missing fuzz target $exe (build the sanitize preset)"; exit 1; }
  corpus="fuzz/corpus/$name"
  mkdir -p "$corpus"
  case "$mode" in
    replay)
      "$exe" -runs=0 "$corpus" >/dev/null 2>"/tmp/nv-fuzz-$name.log" ||
        { cat "/tmp/nv-fuzz-$name.log"; echo "fuzz replay failed: $name"; exit 1; }
      ;;
    run)
      secs=${2:?seconds}
      mkdir -p "fuzz-out/$name"
      "$exe" -max_total_time="$secs" -print_final_stats=1 "fuzz-out/$name" "$corpus" \
        2>&1 | tail -n 12
      ;;
    *) echo "usage: $0 replay | run SECONDS [NAME]"; exit 2 ;;
  esac
  passed=$((passed + 1))
done
if [ "$mode" = replay ]; then echo "fuzz replay of ${passed} targets over their corpora: all clean"; fi
