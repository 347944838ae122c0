#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# Installs what is missing, then builds with warnings as errors and runs every test twice:
# once as built for debugging, once under AddressSanitizer and UndefinedBehaviorSanitizer.
# Then the Debian package is built, checked by lintian and, given root, installed and tried.
# Last, every fuzz target replays its regression inputs and fuzzes for 30 seconds.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
jobs=$(nproc)
for preset in dev asan; do
  echo "== $preset"
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset" -j "$jobs"
  ctest --preset "$preset" -j "$jobs"
done

echo "== package"
# Installs the package into a scratch root when run as root or with passwordless sudo.
scripts/package-test.sh

echo "== fuzz"
scripts/fuzz.sh all 30
