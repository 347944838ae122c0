#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# The window's speed where a person waits: start to a drawn window, a drop of a 12-megapixel
# photo to a drawn result, and scrolling a result with 150 raw entries. Uses the release
# build; runs under Xvfb when there is no display.
# Usage: bench/window_bench.sh   (needs cmake, ninja, vips, exiftool, xvfb-run)
set -euo pipefail
cd "$(dirname "$0")/.."
# One X server for the whole run, started before anything is timed.
if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  exec xvfb-run -a -s "-screen 0 1600x1000x24" "$0" "$@"
fi
cmake --preset release > /dev/null
cmake --build --preset release --target window-bench lumenscribe-decoder > /dev/null
bench=build/release/src/app/window-bench

work=$(mktemp -d "${TMPDIR:-/tmp}/lumenscribe-window-bench-XXXXXX")
trap 'rm -rf "$work"' EXIT

# A photograph-like 4000 x 3000 JPEG with camera and GPS tags, in five copies (five paths).
bench/make_photo.sh "$work/photo.jpg"
exiftool -q -overwrite_original -Make="Fixture Optics" -Model="FX-100" -FNumber=2.8 \
  -ExposureTime=1/250 -ISO=100 -GPSLatitude=48.8584 -GPSLatitudeRef=N -GPSLongitude=2.2945 \
  -GPSLongitudeRef=E "$work/photo.jpg"
photos=()
for i in 1 2 3 4 5; do cp "$work/photo.jpg" "$work/photo-$i.jpg"; photos+=("$work/photo-$i.jpg"); done
cat "$work"/photo-*.jpg > /dev/null  # into the page cache

echo "start (5 runs):"
for i in 1 2 3 4 5; do "$bench" start "$(date +%s%N)"; done
echo "drop of a 12-megapixel photo:"
"$bench" drop "${photos[@]}"
echo "scrolling:"
"$bench" scroll
