#!/usr/bin/env bash
# Sets up everything on a fresh machine and runs the tool: makes the demo installation in the
# home folder ($ORLAN_HOME, else ~/Orlan Vector) when it is not there and shows a demo outing.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
scripts/build.sh build -DCMAKE_BUILD_TYPE=Release
home=${ORLAN_HOME:-$HOME/Orlan Vector}
./build/orlan demo --home "$home"
./build/orlan info --home "$home" "$home/Data/SILV0101.DAT"
