#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# Builds Lumenscribe in Release for /usr (in build/package, so that the release build that
# scripts/run.sh uses stays as it is), hardened as Debian builds its own packages, and writes
# the Debian package build/release/lumenscribe_VERSION_ARCH.deb with CPack; prints its path
# last. Install it with: sudo apt install ./build/release/lumenscribe_*.deb
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
# The changelog and the manual pages are dated by the last commit, so the same source gives
# the same package.
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct 2>/dev/null || date +%s)
export SOURCE_DATE_EPOCH
# Debian's hardening flags; the optimisation level and debug information stay the preset's.
export DEB_BUILD_MAINT_OPTIONS=hardening=+all
read -ra flags <<<"$(dpkg-buildflags --get CPPFLAGS) $(dpkg-buildflags --get CXXFLAGS)"
cxxflags=()
for flag in "${flags[@]}"; do
  case $flag in -g | -O?) ;; *) cxxflags+=("$flag") ;; esac
done
cmake --preset package "-DCMAKE_CXX_FLAGS=${cxxflags[*]}" \
  "-DCMAKE_EXE_LINKER_FLAGS=$(dpkg-buildflags --get LDFLAGS)" >/dev/null
cmake --build --preset package -j "$(nproc)"

build=build/package
rm -f "$build"/lumenscribe_*.deb build/release/lumenscribe_*.deb
(cd "$build" && cpack -G DEB >/dev/null)
debs=("$build"/lumenscribe_*.deb)
if [ ! -f "${debs[0]}" ]; then
  echo "package.sh: CPack wrote no package into $build" >&2
  exit 1
fi
mkdir -p build/release
cp "${debs[0]}" build/release/
echo "build/release/$(basename "${debs[0]}")"
