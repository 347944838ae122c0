#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# Installs what is missing, builds in Release and runs Lumenscribe: the window when a
# display is there, otherwise the printed report of FILE (or of the bundled sample).
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake --preset release >/dev/null
cmake --build --preset release

bin=build/release/src
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] && [ -x "$bin/app/lumenscribe" ]; then
  exec "$bin/app/lumenscribe" "$@"
fi
[ $# -gt 0 ] || set -- samples/field-notes.txt
exec "$bin/lumenscribe-cli" "$@"
