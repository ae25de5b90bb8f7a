#!/usr/bin/env bash
# Installs what building and testing need on a Debian machine, if missing.
set -eu
packages=(cmake ninja-build g++ pkg-config libgtest-dev libgmock-dev libbenchmark-dev
          python3 python3-ezdxf clang libclang-rt-14-dev)
# The Chinese texts of the SVG drawings; building the Debian package.
packages+=(fonts-wqy-microhei dpkg-dev file)
# Line editing, history and completion for a person at vorhost's terminal
# (vorhost builds and works without it, reading lines plainly).
packages+=(libedit-dev)
# vormis.arx, the module as the real host loads it: the i686 MinGW-w64
# compiler with Windows threads (it needs no threading library) and binutils.
packages+=(g++-mingw-w64-i686-win32 binutils-mingw-w64-i686)
# vorhost's window (--gui): Qt 6 widgets, its SVG renderer and QTest.
packages+=(qt6-base-dev qt6-svg-dev libgl-dev)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "Installing: ${missing[*]}"
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo=sudo
  export DEBIAN_FRONTEND=noninteractive
  $sudo apt-get update -q
  $sudo apt-get install -y -q --no-install-recommends "${missing[@]}"
fi
