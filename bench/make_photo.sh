#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# Writes a photograph-like 4000 x 3000 JPEG to OUT: smoothed noise compresses as camera
# output does, so decoding it costs what a real 12-megapixel photo costs.
# Usage: bench/make_photo.sh OUT.jpg   (needs vips)
set -euo pipefail
out=$1
tmp=$(mktemp -d "${TMPDIR:-/tmp}/lumenscribe-photo-XXXXXX")
trap 'rm -rf "$tmp"' EXIT
vips gaussnoise "$tmp/noise.v" 4000 3000 --mean 128 --sigma 40
vips gaussblur "$tmp/noise.v" "$tmp/smooth.v" 1.2 --precision float
vips cast "$tmp/smooth.v" "$tmp/gray.v" uchar
vips bandjoin "$tmp/gray.v $tmp/gray.v $tmp/gray.v" "$tmp/rgb.v"
vips copy "$tmp/rgb.v" "$out[Q=90]"
