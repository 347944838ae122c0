#!/bin/sh
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# Makes the window tests' fixtures in the folder given as $1 (vips and exiftool).
set -eu
out=${1:?usage: make-fixtures.sh OUTPUT_DIR}
mkdir -p "$out"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# A 640 x 480 evening-sky gradient: blue at the top, warm towards the horizon.
vips xyz "$work/xy.v" 640 480
vips extract_band "$work/xy.v" "$work/y.v" 1
vips linear "$work/y.v" "$work/r.v" 0.28 90
vips linear "$work/y.v" "$work/g.v" 0.16 140
vips linear "$work/y.v" "$work/b.v" -- -0.12 245
vips bandjoin "$work/r.v $work/g.v $work/b.v" "$work/rgb.v"
vips cast "$work/rgb.v" "$work/rgb8.v" uchar
vips copy "$work/rgb8.v" "$work/srgb.v" --interpretation srgb
vips copy "$work/srgb.v" "$out/photo_gps.jpg[Q=85]"

# Camera, exposure, creator and a position near the Eiffel Tower.
exiftool -q -overwrite_original \
  -Make="Fixture Optics" -Model="FX-100" -LensModel="FX 35mm F1.8" \
  -FNumber=2.8 -ExposureTime=1/250 -ISO=100 -FocalLength=35 -ExposureProgram#=3 \
  -DateTimeOriginal="2024:06:01 19:42:10" -Software="Lumenscribe Fixture Maker" \
  -Artist="Test Photographer" \
  -GPSLatitude=48.8584 -GPSLatitudeRef=N -GPSLongitude=2.2945 -GPSLongitudeRef=E \
  -GPSAltitude=35 -GPSAltitudeRef=0 \
  "$out/photo_gps.jpg"

# The same picture stored sideways: EXIF orientation 6 asks viewers to turn it.
cp "$out/photo_gps.jpg" "$out/rotated.jpg"
exiftool -q -overwrite_original -n -Orientation=6 "$out/rotated.jpg"

printf 'Field notes\nNothing to see here.\n' > "$out/notes.txt"
: > "$out/empty.txt"
