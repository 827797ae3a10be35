#!/usr/bin/env bash
# Installs the Debian packages that building, running and testing xcontrols need.
# Idempotent: it does nothing when every package is already installed.
set -euo pipefail

packages=(
  build-essential cmake pkg-config
  libmotif-dev libxt-dev libx11-dev libxext-dev libxpm-dev libxtst-dev libx11-xcb-dev
  xvfb xauth xfonts-base xfonts-75dpi xfonts-100dpi
  libgtest-dev libgmock-dev
  nlohmann-json3-dev libsodium-dev libpng-dev
  clang libclang-rt-14-dev
  gcovr valgrind
  python3 python3-jsonschema
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo_cmd=""
[ "$(id -u)" -ne 0 ] && sudo_cmd="sudo"
export DEBIAN_FRONTEND=noninteractive
$sudo_cmd apt-get update -qq
$sudo_cmd apt-get install -y -qq --no-install-recommends "${missing[@]}"
