#!/usr/bin/env bash
# Installs what the build needs from Debian's packages, only what is missing.
set -euo pipefail
packages=(cmake ninja-build g++ clang libclang-rt-14-dev clang-format
          qt6-base-dev libgl-dev libgtest-dev libgmock-dev libbenchmark-dev
          libsqlite3-dev nlohmann-json3-dev xvfb xauth zbar-tools
          g++-mingw-w64-x86-64-posix googletest wine wine64)
missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "Installing: ${missing[*]}"
  SUDO=""
  if [ "$(id -u)" -ne 0 ]; then SUDO=sudo; fi
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq "${missing[@]}"
fi
