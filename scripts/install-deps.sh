#!/usr/bin/env bash
# Installs the Debian packages the build needs, when they are missing.
set -euo pipefail

packages=(g++ cmake ninja-build pkg-config qt6-base-dev libcli11-dev nlohmann-json3-dev
          libgtest-dev libgmock-dev libbenchmark-dev
          fontconfig fonts-dejavu-core)  # text in the plots painted offscreen
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "Installing: ${missing[*]}"
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
