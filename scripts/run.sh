#!/usr/bin/env bash
# Sets up everything on a fresh machine and runs the tool: makes the demo installation in the
# home folder ($ORLAN_HOME, else ~/Orlan Vector) when it is not there and opens the window on it.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
scripts/build.sh build -DCMAKE_BUILD_TYPE=Release
home=${ORLAN_HOME:-$HOME/Orlan Vector}
./build/orlan demo --home "$home"
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  echo "No display to open the window on; run it under one (for example: xvfb-run scripts/run.sh)." >&2
  exit 1
fi
exec ./build/orlan gui --home "$home"
