#!/usr/bin/env bash
# wine-run.sh PREFIX PROGRAM ARGS...: runs a Windows program under wine in the private
# prefix PREFIX (made once, on first use, under a lock so that parallel test runs share
# it). No display is needed.
set -euo pipefail
prefix="$1"
shift
export WINEPREFIX="$prefix" WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
unset DISPLAY
if [ ! -f "$prefix/.nv-ready" ]; then
  mkdir -p "$(dirname "$prefix")"
  (
    flock 9
    if [ ! -f "$prefix/.nv-ready" ]; then
      wineboot --init >/dev/null 2>&1 || true
      wineserver -w
      touch "$prefix/.nv-ready"
    fi
  ) 9>"$prefix.lock"
fi
exec wine "$@"
