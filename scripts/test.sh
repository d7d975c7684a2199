#!/usr/bin/env bash
# Sets up everything on a fresh machine and runs the whole test suite twice: in the normal build
# and in one with AddressSanitizer and UndefinedBehaviorSanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
export QT_QPA_PLATFORM=offscreen
scripts/build.sh build
(cd build && ctest --output-on-failure -j "$(nproc)")
scripts/build.sh build-asan -DCMAKE_BUILD_TYPE=Debug -DORLAN_SANITIZE=ON
(cd build-asan && ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 ctest --output-on-failure -j "$(nproc)")
