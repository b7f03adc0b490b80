#!/usr/bin/env bash
# Runs nvimport on the bundled demo installation the way the main fixed-assets program
# starts it: a "/pid:" token and the mode word on the command line, the ten parameter
# lines on standard input. With a display the import window opens; without one the same
# start runs in scripted mode (testdata/demo/demo-script.txt) and prints the transcript.
#   bash scripts/demo.sh [IMPORT|EXPORT]
set -euo pipefail
cd "$(dirname "$0")/.."
mode=${1:-IMPORT}
bash scripts/setup.sh
cmake --preset default >/dev/null
cmake --build --preset default -j "$(nproc)" --target nvimport

# A scratch copy, so that what start-up writes (TERM.1) never touches the repository.
install_dir=$(mktemp -d /tmp/nv-demo.XXXXXX)
cp -r testdata/demo/. "$install_dir/"
token=$$
handoff() {
  printf '%s\n' "NORVANE Fixed Assets" "" "" "$token" "" "" "" "0" "" "0"
}

export NV_INSTALL_DIR="$install_dir"
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  handoff | build/default/gui/nvimport "/pid:$token" "$mode"
else
  echo "No display: running the same start in scripted mode."
  set +e
  handoff | NV_UI_SCRIPT="$install_dir/demo-script.txt" NV_UI_TRANSCRIPT="$install_dir/transcript.txt" \
    build/default/gui/nvimport "/pid:$token" "$mode"
  code=$?
  set -e
  echo "---- transcript ($install_dir/transcript.txt) ----"
  cat "$install_dir/transcript.txt"
  echo "---- exit code $code; TERM.1 written by start-up: ----"
  cat "$install_dir/TERM.1"
  exit "$code"
fi
