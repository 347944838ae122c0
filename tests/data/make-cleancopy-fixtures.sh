#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# Regenerates tests/data/cleancopy: small pictures full of what a clean copy must take out
# (GPS, camera data, creators, XMP, IPTC, thumbnails, comments, text chunks, an appended
# clip), in every format the clean copy writes, and pictures for the pixel comparison.
# Needs vips (libvips-tools), exiftool (libimage-exiftool-perl) and ImageMagick.
# Usage: tests/data/make-cleancopy-fixtures.sh
set -euo pipefail
cd "$(dirname "$0")"
out=cleancopy
rm -rf "$out"
mkdir -p "$out"
work=$(mktemp -d "${TMPDIR:-/tmp}/lumenscribe-fixtures-XXXXXX")
trap 'rm -rf "$work"' EXIT

tag() { exiftool -q -overwrite_original -n "$@"; }

# A gradient with some detail, 96 x 64, in sRGB.
vips xyz "$work/xy.v" 96 64
vips extract_band "$work/xy.v" "$work/x.v" 0
vips extract_band "$work/xy.v" "$work/y.v" 1
vips linear "$work/x.v" "$work/r.v" 2.5 10
vips linear "$work/y.v" "$work/g.v" 3 20
vips add "$work/x.v" "$work/y.v" "$work/b.v"
vips bandjoin "$work/r.v $work/g.v $work/b.v" "$work/rgb.v"
vips cast "$work/rgb.v" "$work/rgb8.v" uchar
vips copy "$work/rgb8.v" "$work/srgb.v" --interpretation srgb

# Everything a phone or camera leaves in a JPEG: EXIF with camera data, GPS and a thumbnail,
# orientation 6, IPTC (in Photoshop's APP13), XMP, a comment, a Display P3 ICC profile, and
# a clip appended after the end of the image, as motion photos carry one.
vips copy "$work/srgb.v" "$work/p3.jpg[Q=90,profile=p3]"
convert -size 16x12 xc:orange "$work/thumbnail.jpg"
cp "$work/p3.jpg" "$out/camera_gps_thumbnail.jpg"
tag -Make="Fixture Optics" -Model="FX-100" -Software="Fixture Maker 3" -Artist="Test Photographer" \
  -Copyright="(c) Test Photographer" -Orientation=6 -ExposureTime=0.01 -FNumber=2.8 -ISO=100 \
  -DateTimeOriginal="2024:05:04 10:11:12" -SerialNumber="BODY-1234" -LensModel="FX 4mm" \
  -GPSLatitude=51.5007 -GPSLatitudeRef=N -GPSLongitude=0.1246 -GPSLongitudeRef=W \
  -GPSAltitude=12 -GPSAltitudeRef=0 "-ThumbnailImage<=$work/thumbnail.jpg" \
  -IPTC:By-line="Test Photographer" -IPTC:City="London" -XMP-dc:Creator="Test Photographer" \
  -XMP-photoshop:City="London" -Comment="taken on the bridge" \
  "$out/camera_gps_thumbnail.jpg"
printf 'MOTION-CLIP: stands for the video a phone appends after the picture' \
  >>"$out/camera_gps_thumbnail.jpg"

# A PNG with text chunks (tEXt, zTXt: ImageMagick compresses a long comment, iTXt with
# XMP), a modification time (tIME), EXIF with orientation 8 and GPS (eXIf), and the chunks
# that say how to show it (gAMA, cHRM, bKGD, pHYs).
vips copy "$work/srgb.v" "$work/plain.png"
convert "$work/plain.png" -define png:exclude-chunks=date,time -gamma 0.45455 -density 72 \
  -set comment "$(printf 'compressed %.0s' {1..40})" "$out/text_chunks.png"
tag -PNG:Author="Test Author" -PNG:Software="Fixture Maker 3" \
  -PNG:ModifyDate="2024:05:04 10:11:12" -XMP-dc:Creator="Test Photographer" \
  -Orientation=8 -GPSLatitude=48.8584 -GPSLatitudeRef=N -GPSLongitude=2.2945 \
  -GPSLongitudeRef=E "$out/text_chunks.png"

# WebP with EXIF (camera, GPS, orientation 3), XMP and the ICC profile.
vips copy "$work/srgb.v" "$out/camera_gps.webp[Q=90,profile=p3]"
tag -Make="Fixture Optics" -Model="FX-webp" -Orientation=3 -GPSLatitude=35.6586 \
  -GPSLatitudeRef=N -GPSLongitude=139.7454 -GPSLongitudeRef=E -XMP-dc:Creator="Test Photographer" \
  "$out/camera_gps.webp"

# Formats the container rewrite refuses: TIFF (its XMP stays), HEIC; and a single-frame GIF.
vips copy "$work/srgb.v" "$out/camera_gps.tif"
vips copy "$work/srgb.v" "$out/camera_gps.heic[Q=90]"
for file in camera_gps.tif camera_gps.heic; do
  tag -Make="Fixture Optics" -Model="FX-${file#camera_gps.}" -Artist="Test Photographer" \
    -GPSLatitude=33.8568 -GPSLatitudeRef=S -GPSLongitude=151.2153 -GPSLongitudeRef=E \
    -XMP-dc:Creator="Test Photographer" "$out/$file"
done
convert "$work/plain.png" -colors 64 -comment "made by the fixture script" "$out/single_frame.gif"
tag -XMP-dc:Creator="Test Photographer" "$out/single_frame.gif"

# Two pages: not a single picture.
convert -size 32x24 xc:red xc:blue "$out/two_pages.tif"

# Fully transparent pixels whose colours differ: drawn with premultiplied alpha, both are
# nothing at all.
vips black "$work/black.v" 40 30 --bands 1
vips linear "$work/black.v" "$work/red.v" "1 1 1 1" "255 0 0 0" --uchar
vips linear "$work/black.v" "$work/blue.v" "1 1 1 1" "0 0 255 0" --uchar
vips copy "$work/red.v" "$out/transparent_red.png" --interpretation srgb
vips copy "$work/blue.v" "$out/transparent_blue.png" --interpretation srgb
