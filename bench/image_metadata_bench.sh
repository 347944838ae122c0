#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# The image pass against exiftool reading the same 12-megapixel camera JPEG, in the same run:
#  - the property map through a warm decoder worker, one request (limit: under 20 ms and at
#    most a fifth of `exiftool -j`);
#  - a whole `lumenscribe-cli` inspection, pixels decoded for health (limit: 1.5 x
#    `exiftool -j`), and the same with the worker's start-up left to a separate process;
#  - the JPEG health decode (libvips, every pixel) beside jpeg_read_coefficients alone.
# Builds its own optimised copy in build/image-metadata-bench.
# Usage: bench/image_metadata_bench.sh   (needs cmake, ninja, vips, exiftool, hyperfine)
set -euo pipefail
cd "$(dirname "$0")/.."
. bench/engine_build.sh
build_engine_bench image_metadata_timing lumenscribe-cli
timing="$build/image_metadata_timing"
cli="$build/lumenscribe/src/lumenscribe-cli"

work=$(mktemp -d "${TMPDIR:-/tmp}/lumenscribe-image-bench-XXXXXX")
trap 'rm -rf "$work"' EXIT
photo="$work/camera-12mp.jpg"
bench/make_photo.sh "$photo"
exiftool -q -overwrite_original -Make="Bench Optics" -Model="BX-12" -LensModel="BX 24-70mm" \
  -ExposureTime=0.004 -FNumber=5.6 -ISO=200 -FocalLength=35 -Flash#=16 \
  -DateTimeOriginal="2024:06:01 12:00:00" -Software="Bench Firmware 1.0" -Artist="Bench" \
  -GPSLatitude=48.8584 -GPSLatitudeRef=N -GPSLongitude=2.2945 -GPSLongitudeRef=E \
  -GPSAltitude=35 "$photo"
cat "$photo" > /dev/null  # into the page cache
ls -l "$photo" | awk '{print $5, $9}'

hyperfine -N --warmup 3 --runs 30 --export-json "$work/runs.json" \
  "exiftool -j $photo" "$cli $photo" "$timing cold-request $photo" > "$work/hyperfine.txt"
request=$("$timing" request "$photo" 50)
decode=$("$timing" decode "$photo" 10)
coefficients=$("$timing" coefficients "$photo" 10)
python3 - "$work/runs.json" "$request" "$decode" "$coefficients" <<'PY'
import json, sys
results = json.load(open(sys.argv[1]))["results"]
exiftool, cli, cold = (r["median"] * 1000 for r in results)
# Processor time (user + system, all threads and children) does not depend on how busy the
# machine is; wall time does.
exiftoolCpu, cliCpu, _ = ((r["user"] + r["system"]) * 1000 for r in results)
request, decode, coefficients = (float(x) for x in sys.argv[2:5])
print(f"exiftool -j:                          {exiftool:7.1f} ms")
print(f"property map, warm worker, 1 request: {request:7.2f} ms  "
      f"(limit 20 ms; exiftool / ours = {exiftool / request:.1f}, limit >= 5)")
print(f"property map, fresh process + worker: {cold:7.1f} ms")
print(f"lumenscribe-cli, whole inspection:    {cli:7.1f} ms  "
      f"(ours / exiftool = {cli / exiftool:.2f}, limit 1.5)")
print(f"processor time, exiftool / cli:       {exiftoolCpu:7.1f} / {cliCpu:.1f} ms "
      f"(ratio {cliCpu / exiftoolCpu:.2f})")
print(f"JPEG health decode (libvips):         {decode:7.1f} ms")
print(f"jpeg_read_coefficients alone:         {coefficients:7.1f} ms")
PY
