#!/usr/bin/env bash
# Installs what the build needs from Debian's packages, only what is missing.
set -euo pipefail
packages=(cmake ninja-build g++ clang libclang-rt-14-dev clang-format
          qt6-base-dev libgl-dev libgtest-dev libgmock-dev libbenchmark-dev
          libsqlite3-dev nlohmann-json3-dev xvfb xauth zbar-tools)
# Wanted without their recommendations: LibreOffice Calc only opens the export files in
# a test, headless, and its recommended packages are many times its own size.
lean_packages=(libreoffice-calc)

missing_of() {
  local p
  for p in "$@"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
      echo "$p"
    fi
  done
}
mapfile -t missing < <(missing_of "${packages[@]}")
mapfile -t missing_lean < <(missing_of "${lean_packages[@]}")
if [ $((${#missing[@]} + ${#missing_lean[@]})) -gt 0 ]; then
  echo "Installing: ${missing[*]} ${missing_lean[*]}"
  SUDO=""
  if [ "$(id -u)" -ne 0 ]; then SUDO=sudo; fi
  $SUDO apt-get update -qq
  if [ ${#missing[@]} -gt 0 ]; then
    DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq "${missing[@]}"
  fi
  if [ ${#missing_lean[@]} -gt 0 ]; then
    DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends \
      "${missing_lean[@]}"
  fi
fi
